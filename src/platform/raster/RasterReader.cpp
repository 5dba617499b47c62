#include "platform/raster/RasterReader.h"

#include "platform/raster/ImageFileReader.h"
#include "platform/raster/TiffFile.h"
#include "platform/raster/TiffReader.h"
#include "platform/system/Failure.h"

#include <QFile>

namespace quillfern {

std::unique_ptr<RasterReader> RasterReader::open(const QString& path)
{
    auto file = std::make_unique<QFile>(path);
    if (!file->open(QIODevice::ReadOnly))
        throw Failure(QStringLiteral("the file cannot be read: %1").arg(file->errorString()));
    const QByteArray start = file->peek(1024);
    if (start.isEmpty()) throw Failure(QStringLiteral("the file is empty"));
    if (TiffFile::isTiff(start)) return std::make_unique<TiffReader>(path);
    if (start.contains("%PDF-"))
        throw Failure(QStringLiteral("the file is a PDF document under another kind of name"));
    return std::make_unique<ImageFileReader>(std::move(file));
}

} // namespace quillfern
