#include "platform/raster/ImageInspector.h"

#include "platform/pdf/PdfDocument.h"
#include "platform/raster/TiffFile.h"
#include "platform/system/Failure.h"
#include "platform/system/FileAccess.h"

#include <QImageReader>
#include <algorithm>

namespace quillfern {

namespace {

ImageFacts inspectTiff(const FilePath& path)
{
    try {
        const TiffFile file(path);
        ImageFacts facts;
        facts.compression = file.field<std::uint16_t>(TIFFTAG_COMPRESSION, COMPRESSION_NONE);
        facts.pages = static_cast<std::int32_t>(TIFFNumberOfDirectories(file.handle()));
        return facts;
    } catch (const Failure&) {
        return {};
    }
}

ImageFacts inspectOther(QIODevice& file)
{
    QImageReader reader(&file);
    reader.setDecideFormatFromContent(true);
    if (!reader.canRead() || !reader.size().isValid()) return {};
    return {std::max(1, reader.imageCount()), 1};
}

} // namespace

ImageFacts inspectImageFile(const FilePath& path)
{
    std::unique_ptr<QIODevice> file;
    try {
        file = readRegularFile(path);
    } catch (const Failure&) {
        return {};
    }
    const QByteArray start = file->peek(1024);
    if (start.contains("%PDF-")) return {pdfPageCount(path), 1};
    if (TiffFile::isTiff(start)) return inspectTiff(path);
    const ImageFacts facts = inspectOther(*file);
    // A PDF may start with anything, as long as its trailer is found.
    return facts.pages > 0 ? facts : ImageFacts{pdfPageCount(path), 1};
}

} // namespace quillfern
