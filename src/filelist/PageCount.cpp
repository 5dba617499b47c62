#include "filelist/PageCount.h"

#include "platform/pdf/PdfPageCount.h"
#include "platform/raster/ImageInspector.h"
#include "platform/system/Failure.h"
#include "platform/system/FileAccess.h"

#include <QIODevice>

namespace quillfern {

namespace {

/// The first bytes of a regular file; empty when the file cannot be read.
QByteArray startOf(const FilePath& path)
{
    constexpr qint64 size = 1024;
    try {
        return readRegularFile(path)->read(size);
    } catch (const Failure&) {
        return {};
    }
}

} // namespace

PageCount countPages(const FilePath& path)
{
    const QByteArray start = startOf(path);
    if (start.isEmpty()) return {};
    if (!start.contains("%PDF-")) {
        if (const auto image = raster::inspectImageFile(path)) return {image->pages, image->compression};
        // A PDF may start with anything, as long as its trailer is found.
    }
    return {pdf::pdfPageCount(path), 1};
}

} // namespace quillfern
