#include "platform/raster/ImageInspector.h"

#include "platform/raster/BmpReader.h"
#include "platform/raster/GifReader.h"
#include "platform/raster/JpegReader.h"
#include "platform/raster/PngReader.h"
#include "platform/raster/TiffFile.h"
#include "platform/system/Failure.h"
#include "platform/system/FileAccess.h"

#include <QIODevice>
#include <QImageReader>
#include <algorithm>
#include <memory>

namespace quillfern::raster {

namespace {

ImageFacts inspectTiff(const FilePath& path)
{
    try {
        TiffFile file(path);
        ImageFacts facts;
        facts.compression = file.field<std::uint16_t>(TIFFTAG_COMPRESSION, COMPRESSION_NONE);
        facts.pages = static_cast<std::int32_t>(file.countDirectories());
        return facts;
    } catch (const Failure&) {
        return {};
    }
}

/// Qt's readers would print what libpng and libjpeg say of a file.
std::optional<ImageFacts> inspectOther(QIODevice& file)
{
    const QByteArray start = file.peek(8);
    const auto onePage = [](bool isReadable) {
        return isReadable ? std::optional(ImageFacts{1, 1}) : std::nullopt;
    };
    if (start.startsWith("BM")) return onePage(BmpHeader::read(file).has_value());
    if (JpegReader::isJpeg(start)) return onePage(JpegReader::hasHeader(file));
    if (PngReader::isPng(start)) return onePage(PngReader::hasHeader(file));
    if (start.startsWith("GIF8")) {
        const auto layout = GifLayout::read(file);
        return layout ? std::optional(ImageFacts{static_cast<std::int32_t>(layout->frames.size()), 1})
                      : std::nullopt;
    }
    QImageReader reader(&file);
    reader.setDecideFormatFromContent(true);
    if (!reader.canRead() || !reader.size().isValid()) return std::nullopt;
    return ImageFacts{std::max(1, reader.imageCount()), 1};
}

} // namespace

std::optional<ImageFacts> inspectImageFile(const FilePath& path)
{
    std::unique_ptr<QIODevice> file;
    try {
        file = readRegularFile(path);
    } catch (const Failure&) {
        return std::nullopt;
    }
    return TiffFile::isTiff(file->peek(16)) ? inspectTiff(path) : inspectOther(*file);
}

} // namespace quillfern::raster
