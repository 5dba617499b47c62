#include "platform/raster/PageLook.h"

#include "platform/raster/ImageFileReader.h"
#include "platform/raster/TiffFile.h"
#include "platform/raster/TiffPageInfo.h"
#include "platform/system/Cancellation.h"
#include "platform/system/FileAccess.h"

namespace quillfern::raster {

namespace {

PageLook lookAtTiff(std::unique_ptr<QFileDevice> device, const FilePath& path)
{
    const TiffFile file(std::move(device), path);
    const TiffPageInfo info = readTiffPageInfo(file);
    const QSizeF stored(info.width, info.height);
    return {info.isTurned() ? stored.transposed() : stored, info.sizeInPoints()};
}

PageLook lookAtOther(std::unique_ptr<QFileDevice> device, const std::stop_token& stop)
{
    const auto reader = ImageFileReader::open(std::move(device), stop);
    const QSizeF stored(reader->storedSize());
    const QSizeF points = reader->firstPageSize();
    const bool isTurned =
        reader->isTransformed() && (stored.width() > stored.height()) != (points.width() > points.height());
    return {isTurned ? stored.transposed() : stored, points};
}

} // namespace

std::optional<PageLook> lookAtFirstPage(const FilePath& path, const std::stop_token& stop)
{
    throwIfCancelled(stop);
    try {
        std::unique_ptr<QFileDevice> device = readRegularFile(path);
        const bool isTiff = TiffFile::isTiff(device->peek(16));
        return isTiff ? lookAtTiff(std::move(device), path) : lookAtOther(std::move(device), stop);
    } catch (const Cancelled&) {
        throw;
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

} // namespace quillfern::raster
