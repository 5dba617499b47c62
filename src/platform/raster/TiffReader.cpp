#include "platform/raster/TiffReader.h"

#include "platform/raster/TiffDecoder.h"
#include "platform/raster/TiffEntries.h"
#include "platform/system/Cancellation.h"

namespace quillfern::raster {

TiffReader::TiffReader(std::shared_ptr<const QFileDevice> file, const FilePath& path,
                       const std::stop_token& stop)
    : source_(std::move(file)), path_(path), file_(source_, path)
{
    file_.setStop(stop);
    const auto count = static_cast<int>(file_.countDirectories());
    throwIfCancelled(stop);
    // A chain of directories that breaks off would look like a shorter document, unless there is nothing in
    // the file that a page behind those found could be.
    if (count < 1 || (file_.hasError() && !isFilledByPages(file_, count)))
        throw file_.failure(QT_TRANSLATE_NOOP("quillfern::Failure", "The picture is damaged or cut off."));
    setPages(count, readTiffPageInfo(file_).sizeInPoints());
}

std::unique_ptr<RasterReader> TiffReader::twin() const
{
    return std::make_unique<TiffReader>(source_, path_, file_.stop());
}

TiffPageInfo TiffReader::info()
{
    for (; pending_ > 0; --pending_)
        if (TIFFReadDirectory(file_.handle()) != 1)
            throw file_.failure(
                QT_TRANSLATE_NOOP("quillfern::Failure", "A page of the file is missing or damaged."));
    return readTiffPageInfo(file_);
}

double TiffReader::nextPageBytes()
{
    return decodedTiffBytes(info());
}

RasterPage TiffReader::readPage(const std::stop_token& stop)
{
    file_.setStop(stop);
    const TiffPageInfo described = info();
    RasterPage page = decodeTiffPage(file_, described);
    page.points = described.sizeInPoints();
    pending_ = 1;
    return page;
}

} // namespace quillfern::raster
