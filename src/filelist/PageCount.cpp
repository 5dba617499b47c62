#include "filelist/PageCount.h"

#include "platform/pdf/PdfPageCount.h"
#include "platform/raster/ImageInspector.h"
#include "platform/system/Failure.h"
#include "platform/system/FileAccess.h"

#include <QFile>

namespace quillfern {

namespace {

/// The first bytes of a regular file; nothing of one that cannot be read.
QByteArray startOf(const QString& path)
{
    constexpr qint64 size = 1024;
    QFile file;
    try {
        openRegularFile(file, path);
    } catch (const Failure&) {
        return {};
    }
    return file.read(size);
}

} // namespace

PageCount countPages(const QString& path)
{
    const QByteArray start = startOf(path);
    if (start.isEmpty()) return {};
    if (!start.contains("%PDF-")) {
        if (const auto image = inspectImageFile(path)) return {image->pages, image->compression};
        // A PDF may start with anything, as long as its trailer is found.
    }
    return {pdfPageCount(path), 1};
}

} // namespace quillfern
