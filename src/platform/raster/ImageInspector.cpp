#include "platform/raster/ImageInspector.h"

#include "platform/pdf/PdfDocument.h"
#include "platform/system/Failure.h"
#include "platform/system/FileAccess.h"
#include "platform/system/NativePath.h"

#include <QFile>
#include <QImageReader>
#include <algorithm>
#include <memory>
#include <tiffio.h>

namespace quillfern {

namespace {

struct TiffCloser
{
    void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};

void quietTiff()
{
    // libtiff prints to the standard error stream unless told otherwise; a file that cannot be read is told
    // of by its page count.
    TIFFSetErrorHandler(nullptr);
    TIFFSetWarningHandler(nullptr);
}

ImageFacts inspectTiff(const QString& path)
{
    quietTiff();
    ImageFacts facts;
    // 'm' leaves the file unmapped: it may shrink under our hands.
    const std::unique_ptr<TIFF, TiffCloser> tiff(TIFFOpen(nativePath(path).constData(), "rm"));
    if (!tiff) return facts;
    std::uint16_t compression = 1;
    TIFFGetFieldDefaulted(tiff.get(), TIFFTAG_COMPRESSION, &compression);
    facts.compression = compression;
    facts.pages = static_cast<std::int32_t>(TIFFNumberOfDirectories(tiff.get()));
    return facts;
}

ImageFacts inspectOther(QFile& file)
{
    QImageReader reader(&file);
    reader.setDecideFormatFromContent(true);
    if (!reader.canRead() || !reader.size().isValid()) return {};
    return {std::max(1, reader.imageCount()), 1};
}

} // namespace

ImageFacts inspectImageFile(const QString& path)
{
    QFile file;
    try {
        openRegularFile(file, path);
    } catch (const Failure&) {
        return {};
    }
    const QByteArray start = file.peek(1024);
    if (start.contains("%PDF-")) return {pdfPageCount(path), 1};
    for (const QByteArray& magic :
         {QByteArray("II*\0", 4), QByteArray("MM\0*", 4), QByteArray("II+\0", 4), QByteArray("MM\0+", 4)})
        if (start.startsWith(magic)) return inspectTiff(path);
    const ImageFacts facts = inspectOther(file);
    // A PDF may start with anything, as long as its trailer is found.
    return facts.pages > 0 ? facts : ImageFacts{pdfPageCount(path), 1};
}

} // namespace quillfern
