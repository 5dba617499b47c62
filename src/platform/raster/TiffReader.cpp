#include "platform/raster/TiffReader.h"

#include "platform/raster/TiffDecoder.h"
#include "platform/system/Failure.h"

namespace quillfern {

TiffReader::TiffReader(const QString& path) : file_(path)
{
    begin();
}

TiffReader::TiffReader(const QByteArray& bytes) : file_(bytes)
{
    begin();
}

void TiffReader::begin()
{
    file_.clearErrors();
    const auto count = static_cast<int>(TIFFNumberOfDirectories(file_.handle()));
    // A chain of directories that breaks off would pass for a shorter document.
    if (file_.hasError() || count < 1) throw file_.failure(QStringLiteral("the file is damaged or cut off"));
    setPages(count, readTiffPageInfo(file_).sizeInPoints());
}

RasterPage TiffReader::readPage()
{
    for (; pending_ > 0; --pending_)
        if (TIFFReadDirectory(file_.handle()) != 1)
            throw file_.failure(QStringLiteral("a page is missing or damaged"));
    RasterPage page = decodeTiffPage(file_, readTiffPageInfo(file_));
    pending_ = 1;
    return page;
}

} // namespace quillfern
