#include "platform/raster/TiffFile.h"

#include "platform/raster/RasterLimits.h"
#include "platform/system/Failure.h"
#include "platform/system/NativePath.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace quillfern {

namespace {

struct OptionsFree
{
    void operator()(TIFFOpenOptions* options) const { TIFFOpenOptionsFree(options); }
};

std::unique_ptr<TIFFOpenOptions, OptionsFree> openOptions(TIFFErrorHandlerExtR onError, void* file)
{
    std::unique_ptr<TIFFOpenOptions, OptionsFree> options(TIFFOpenOptionsAlloc());
    if (!options) throw std::bad_alloc();
    TIFFOpenOptionsSetErrorHandlerExtR(options.get(), onError, file);
    TIFFOpenOptionsSetWarningHandlerExtR(
        options.get(), [](TIFF*, void*, const char*, const char*, va_list) { return 1; }, nullptr);
    TIFFOpenOptionsSetMaxSingleMemAlloc(options.get(), largestPageBytes + (1 << 20));
    return options;
}

} // namespace

// 'm' leaves the file unmapped.
TiffFile::TiffFile(const QString& path)
    : tiff_(TIFFOpenExt(nativePath(path).constData(), "rm", openOptions(keepError, this).get()))
{
    if (!tiff_) throw failure(QStringLiteral("the TIFF file cannot be read"));
}

TiffFile::TiffFile(const QByteArray& bytes)
    : memory_{&bytes, 0},
      tiff_(TIFFClientOpenExt(
          "picture", "rm", &memory_, readMemory, [](thandle_t, void*, tmsize_t) -> tmsize_t { return 0; },
          seekMemory, [](thandle_t) { return 0; },
          [](thandle_t handle) {
              return static_cast<toff_t>(static_cast<const Memory*>(handle)->bytes->size());
          },
          nullptr, nullptr, openOptions(keepError, this).get()))
{
    if (!tiff_) throw failure(QStringLiteral("the TIFF data cannot be read"));
}

bool TiffFile::isTiff(const QByteArray& start)
{
    for (const QByteArray& magic :
         {QByteArray("II*\0", 4), QByteArray("MM\0*", 4), QByteArray("II+\0", 4), QByteArray("MM\0+", 4)})
        if (start.startsWith(magic)) return true;
    return false;
}

int TiffFile::keepError(TIFF*, void* file, const char*, const char* format, va_list arguments)
{
    char text[512];
    std::vsnprintf(text, sizeof text, format, arguments);
    static_cast<TiffFile*>(file)->lastError_ = text;
    return 1; // nobody else needs to hear of it
}

tmsize_t TiffFile::readMemory(thandle_t handle, void* buffer, tmsize_t size)
{
    auto* memory = static_cast<Memory*>(handle);
    const auto length = static_cast<toff_t>(memory->bytes->size());
    if (memory->position >= length || size <= 0) return 0;
    const auto count = std::min(static_cast<toff_t>(size), length - memory->position);
    std::memcpy(buffer, memory->bytes->constData() + memory->position, count);
    memory->position += count;
    return static_cast<tmsize_t>(count);
}

toff_t TiffFile::seekMemory(thandle_t handle, toff_t offset, int whence)
{
    auto* memory = static_cast<Memory*>(handle);
    if (whence == SEEK_CUR) offset += memory->position;
    if (whence == SEEK_END) offset += static_cast<toff_t>(memory->bytes->size());
    return memory->position = offset;
}

Failure TiffFile::failure(const QString& doing) const
{
    const QString said = QString::fromLocal8Bit(lastError_).trimmed();
    return Failure(said.isEmpty() ? doing : QStringLiteral("%1: %2").arg(doing, said));
}

} // namespace quillfern
