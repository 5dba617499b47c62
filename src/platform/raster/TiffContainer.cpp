#include "platform/raster/TiffContainer.h"

#include "platform/raster/TiffDirectory.h"
#include "platform/store/AtomicFile.h"
#include "platform/system/Failure.h"

#include <cerrno>
#include <tiff.h>
#include <unistd.h>

namespace quillfern::raster {

TiffFileOutput::TiffFileOutput(store::AtomicFile& file) : file_(file)
{
    if (::lseek(file_.descriptor(), static_cast<off_t>(headerSize), SEEK_SET) < 0)
        throw Failure::fromErrno(QT_TRANSLATE_NOOP("quillfern::Failure", "The pages cannot be written."),
                                 errno);
}

void TiffFileOutput::append(const char* data, std::size_t size)
{
    file_.write(data, size);
}

void TiffFileOutput::setHeader(const QByteArray& header)
{
    const auto size = static_cast<std::size_t>(header.size());
    if (::pwrite(file_.descriptor(), header.constData(), size, 0) != header.size())
        throw Failure::fromErrno(QT_TRANSLATE_NOOP("quillfern::Failure", "The pages cannot be written."),
                                 errno);
}

TiffContainer::TiffContainer(TiffOutput& output, std::uint64_t classicLimit)
    : output_(output), classicLimit_(classicLimit)
{
}

std::uint64_t TiffContainer::append(const QByteArray& bytes)
{
    const std::uint64_t at = end_;
    output_.append(bytes.constData(), static_cast<std::size_t>(bytes.size()));
    end_ += static_cast<std::uint64_t>(bytes.size());
    if (end_ % 2 != 0) {
        output_.append("", 1);
        ++end_;
    }
    return at;
}

TiffContainer::Value TiffContainer::keep(std::uint16_t tag, std::uint16_t type, const QByteArray& bytes)
{
    constexpr qsizetype inDirectory = 8; // at most, of both kinds of TIFF
    if (bytes.size() <= inDirectory) return {tag, type, bytes};
    const auto size = static_cast<std::uint64_t>(bytes.size());
    return {tag, type, {}, append(bytes), size};
}

void TiffContainer::beginPage(const StripFormat& format, std::uint32_t height, std::uint32_t rowsPerStrip,
                              const QSizeF& dotsPerInch, const QByteArray& colourProfile,
                              const PageTags& tags)
{
    Page page{format, height, rowsPerStrip, dotsPerInch, {}, {}, {}};
    if (!colourProfile.isEmpty())
        page.values.push_back(keep(TIFFTAG_ICCPROFILE, TIFF_UNDEFINED, colourProfile));
    for (const auto& [tag, value] : tags) {
        if (isPageText(tag))
            page.values.push_back(keep(tag, TIFF_ASCII, value + '\0'));
        else
            page.values.push_back(keep(tag, tag == TIFFTAG_XMLPACKET ? TIFF_BYTE : TIFF_UNDEFINED, value));
    }
    pages_.push_back(std::move(page));
}

void TiffContainer::addStrip(const QByteArray& encoded)
{
    Page& page = pages_.back();
    page.offsets.push_back(append(encoded));
    page.sizes.push_back(static_cast<std::uint64_t>(encoded.size()));
}

QByteArray TiffContainer::directory(const Page& page, bool isBig, std::uint64_t at, bool isLast)
{
    const StripFormat& format = page.format;
    TiffDirectory directory(isBig);
    directory.number(TIFFTAG_SUBFILETYPE, FILETYPE_PAGE);
    directory.number(TIFFTAG_IMAGEWIDTH, format.width);
    directory.number(TIFFTAG_IMAGELENGTH, page.height);
    directory.shorts(TIFFTAG_BITSPERSAMPLE,
                     std::vector<std::uint16_t>(format.channels, format.isBilevel ? 1 : 8));
    directory.shorts(TIFFTAG_COMPRESSION, {format.compression});
    directory.shorts(TIFFTAG_PHOTOMETRIC, {format.photometric()});
    directory.offsets(TIFFTAG_STRIPOFFSETS, page.offsets);
    directory.shorts(TIFFTAG_ORIENTATION, {ORIENTATION_TOPLEFT});
    directory.shorts(TIFFTAG_SAMPLESPERPIXEL, {format.channels});
    directory.number(TIFFTAG_ROWSPERSTRIP, page.rowsPerStrip);
    directory.offsets(TIFFTAG_STRIPBYTECOUNTS, page.sizes);
    directory.ratio(TIFFTAG_XRESOLUTION, page.dotsPerInch.width());
    directory.ratio(TIFFTAG_YRESOLUTION, page.dotsPerInch.height());
    directory.shorts(TIFFTAG_PLANARCONFIG, {PLANARCONFIG_CONTIG});
    directory.shorts(TIFFTAG_RESOLUTIONUNIT, {RESUNIT_INCH});
    if (format.compression == COMPRESSION_CCITTFAX3)
        directory.number(TIFFTAG_GROUP3OPTIONS, format.group3Options);
    if (format.hasPredictor()) directory.shorts(TIFFTAG_PREDICTOR, {PREDICTOR_HORIZONTAL});
    if (format.channels == 4) directory.shorts(TIFFTAG_EXTRASAMPLES, {EXTRASAMPLE_UNASSALPHA});
    if (format.photometric() == PHOTOMETRIC_YCBCR)
        directory.shorts(TIFFTAG_YCBCRSUBSAMPLING, {format.subsampling[0], format.subsampling[1]});
    for (const Value& value : page.values) {
        if (value.offset > 0)
            directory.elsewhere(value.tag, value.type, value.offset, value.size);
        else
            directory.bytes(value.tag, value.type, value.bytes);
    }
    return directory.take(at, isLast);
}

void TiffContainer::finish()
{
    const std::uint64_t first = end_;
    std::uint64_t classicEnd = first;
    for (const Page& page : pages_)
        classicEnd += static_cast<std::uint64_t>(directory(page, false, first, false).size());
    const bool isBig = classicEnd > classicLimit_;
    for (std::size_t i = 0; i < pages_.size(); ++i)
        append(directory(pages_[i], isBig, end_, i + 1 == pages_.size()));
    output_.setHeader(TiffDirectory::header(isBig, first));
}

} // namespace quillfern::raster
