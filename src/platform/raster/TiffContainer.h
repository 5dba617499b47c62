#pragma once

#include "platform/raster/PageTags.h"
#include "platform/raster/StripCodec.h"

#include <QByteArray>
#include <QSizeF>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace quillfern::store {
class AtomicFile;
}

namespace quillfern::raster {

/// Where the bytes of a TIFF go: in order, except for the header, which comes last.
class TiffOutput
{
  public:
    virtual ~TiffOutput() = default;
    /// Throws Failure, as setHeader() does, when the bytes cannot be written.
    virtual void append(const char* data, std::size_t size) = 0;
    /// Fills the bytes in front of the appended ones.
    virtual void setHeader(const QByteArray& header) = 0;

    /// Bytes left free for the header; a classic TIFF uses half of them.
    static constexpr std::uint64_t headerSize = 16;
};

/// Writes to a file to which nothing has been written before. The file is neither owned nor committed here.
class TiffFileOutput final : public TiffOutput
{
  public:
    explicit TiffFileOutput(store::AtomicFile& file);
    void append(const char* data, std::size_t size) override;
    void setHeader(const QByteArray& header) override;

  private:
    store::AtomicFile& file_;
};

class TiffMemoryOutput final : public TiffOutput
{
  public:
    void append(const char* data, std::size_t size) override
    {
        bytes_.append(data, static_cast<qsizetype>(size));
    }
    void setHeader(const QByteArray& header) override { bytes_.replace(0, header.size(), header); }
    [[nodiscard]] const QByteArray& bytes() const { return bytes_; }

  private:
    QByteArray bytes_ = QByteArray(static_cast<qsizetype>(headerSize), '\0');
};

/// Lays a multi-page TIFF out in a file: encoded strips as they come, and all directories at the end, when it
/// is known whether the offsets fit 32 bits. A document stays a classic TIFF as long as it can and becomes a
/// BigTIFF otherwise; the time for a page does not grow with the number of pages before it.
class TiffContainer
{
  public:
    /// `output` must outlive this object. `classicLimit` is the size above which the document becomes a
    /// BigTIFF.
    explicit TiffContainer(TiffOutput& output, std::uint64_t classicLimit = 0xFFFFFFFFU);

    /// Begins the next page; its strips follow from the top.
    void beginPage(const StripFormat& format, std::uint32_t height, std::uint32_t rowsPerStrip,
                   const QSizeF& dotsPerInch, const QByteArray& colourProfile, const PageTags& tags = {});
    void addStrip(const QByteArray& encoded);
    /// Writes the directories and the header. Throws Failure, as all of them do, when the file cannot be
    /// written.
    void finish();

    [[nodiscard]] std::size_t pageCount() const { return pages_.size(); }

  private:
    /// The value of a tag; long ones are in the file already and their bytes are not kept.
    struct Value
    {
        std::uint16_t tag = 0;
        std::uint16_t type = 0;
        QByteArray bytes;
        std::uint64_t offset = 0;
        std::uint64_t size = 0;
    };
    struct Page
    {
        StripFormat format;
        std::uint32_t height = 0;
        std::uint32_t rowsPerStrip = 0;
        QSizeF dotsPerInch;
        std::vector<Value> values;
        std::vector<std::uint64_t> offsets;
        std::vector<std::uint64_t> sizes;
    };

    std::uint64_t append(const QByteArray& bytes);
    [[nodiscard]] Value keep(std::uint16_t tag, std::uint16_t type, const QByteArray& bytes);
    [[nodiscard]] static QByteArray directory(const Page& page, bool isBig, std::uint64_t at, bool isLast);

    TiffOutput& output_;
    std::uint64_t classicLimit_;
    std::uint64_t end_ = TiffOutput::headerSize; ///< where the next bytes go
    std::vector<Page> pages_;
};

} // namespace quillfern::raster
