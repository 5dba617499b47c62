#include "platform/raster/RasterReader.h"

#include "platform/raster/ImageFileReader.h"
#include "platform/raster/TiffFile.h"
#include "platform/raster/TiffReader.h"
#include "platform/system/Failure.h"
#include "platform/system/FileAccess.h"

namespace quillfern::raster {

std::unique_ptr<RasterReader> RasterReader::open(const FilePath& path, const std::stop_token& stop)
{
    auto file = readRegularFile(path);
    const QByteArray start = file->peek(1024);
    if (start.isEmpty()) throw Failure(QT_TRANSLATE_NOOP("quillfern::Failure", "The file is empty."));
    if (TiffFile::isTiff(start)) return std::make_unique<TiffReader>(std::move(file), path, stop);
    if (start.contains("%PDF-"))
        throw Failure(
            QT_TRANSLATE_NOOP("quillfern::Failure", "This is a PDF document under the name of a picture."));
    return ImageFileReader::open(std::move(file), stop);
}

} // namespace quillfern::raster
