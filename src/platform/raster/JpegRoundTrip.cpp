#include "platform/raster/JpegRoundTrip.h"

#include "platform/system/Failure.h"

#include <algorithm>
#include <memory>
#include <turbojpeg.h>
#include <vector>

namespace quillfern {

namespace {

constexpr int bestQuality = 100;
constexpr int widestBand = 65504; ///< the format ends at 65535 columns; a multiple of eight

struct HandleFree
{
    void operator()(void* handle) const { tjDestroy(handle); }
};
using Handle = std::unique_ptr<void, HandleFree>;

[[noreturn]] void fail(const Handle& handle)
{
    throw Failure(QStringLiteral("JPEG coding failed: %1")
                      .arg(QString::fromLatin1(handle ? tjGetErrorStr2(handle.get()) : "not enough memory")));
}

} // namespace

void jpegRoundTrip(uchar* pixels, int width, int rows, int channels)
{
    const Handle coder(tjInitCompress());
    const Handle decoder(tjInitDecompress());
    if (!coder) fail(coder);
    if (!decoder) fail(decoder);
    const int format = channels == 1 ? TJPF_GRAY : TJPF_RGB;
    const int sampling = channels == 1 ? TJSAMP_GRAY : TJSAMP_444;
    const int pitch = width * channels;
    std::vector<uchar> coded(tjBufSize(std::min(width, widestBand), rows, sampling));
    for (int x = 0; x < width; x += widestBand) {
        const int columns = std::min(widestBand, width - x);
        uchar* band = pixels + static_cast<std::ptrdiff_t>(x) * channels;
        uchar* buffer = coded.data();
        auto size = static_cast<unsigned long>(coded.size());
        if (tjCompress2(coder.get(), band, columns, pitch, rows, format, &buffer, &size, sampling,
                        bestQuality, TJFLAG_NOREALLOC) != 0)
            fail(coder);
        if (tjDecompress2(decoder.get(), buffer, size, band, columns, pitch, rows, format, 0) != 0)
            fail(decoder);
    }
}

} // namespace quillfern
