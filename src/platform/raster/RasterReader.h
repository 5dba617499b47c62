#pragma once

#include "platform/raster/RasterPage.h"
#include "platform/system/FilePath.h"

#include <QSizeF>
#include <QString>
#include <memory>
#include <stop_token>

namespace quillfern::raster {

/// Reads the pages of a raster file one after the other: TIFF, BMP, JPEG, PNG or GIF, recognised by its
/// content, not by its name. May be handed from thread to thread, but is used by one at a time.
class RasterReader
{
  public:
    /// Throws Failure when the file cannot be read as a picture, and Cancelled, as all functions here with a
    /// token, soon after its stop is requested.
    [[nodiscard]] static std::unique_ptr<RasterReader> open(const FilePath& path,
                                                            const std::stop_token& stop = {});

    virtual ~RasterReader() = default;

    [[nodiscard]] int pageCount() const { return pageCount_; } ///< at least 1
    /// Width and height of the first page in points; a pixel is a point where the file states no resolution.
    [[nodiscard]] QSizeF firstPageSize() const { return firstPageSize_; }

    /// The next page. Throws Failure when it is damaged, cut off or too large, and when there is none.
    [[nodiscard]] virtual RasterPage readPage(const std::stop_token& stop = {}) = 0;
    /// Bytes of pixels that the next page takes, as far as its header states. Throws as readPage() does.
    [[nodiscard]] virtual double nextPageBytes() = 0;
    /// Passes over the next page without decoding it, where the format allows.
    virtual void skipPage(const std::stop_token& stop = {}) = 0;
    /// A reader of the same pages, from the first one on, for another thread at the same time; none for
    /// formats in which a page needs those before it.
    [[nodiscard]] virtual std::unique_ptr<RasterReader> twin() const { return nullptr; }

  protected:
    void setPages(int count, const QSizeF& firstSize)
    {
        pageCount_ = count;
        firstPageSize_ = firstSize;
    }

  private:
    int pageCount_ = 0;
    QSizeF firstPageSize_;
};

} // namespace quillfern::raster
