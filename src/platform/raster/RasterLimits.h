#pragma once

#include <QImage>
#include <cstdint>

namespace quillfern::raster {

inline constexpr double plainDotsPerInch = 72; ///< where a file states no resolution: a pixel is a point
inline constexpr double centimetresPerInch = 2.54;

/// The largest page that is decoded, in bytes of pixels. What a header claims is held against this before any
/// memory is taken: an A0 sheet in colour at 400 dpi fits, a hostile header does not.
inline constexpr std::int64_t largestPageBytes = std::int64_t{1} << 30;

/// Pages above this are not decoded ahead, so that a document of huge pages needs one at a time.
inline constexpr std::int64_t largestPageAhead = std::int64_t{1} << 26;

/// Pages above this are decoded one at a time: a second one would cost more memory than it saves time.
inline constexpr std::int64_t largestPageInPairs = std::int64_t{1} << 24;

/// An uninitialised image of the given format. Throws Failure, in words for people, when the size is not
/// positive, is beyond the limit or needs more memory than there is.
[[nodiscard]] QImage makePageImage(std::int64_t width, std::int64_t height, QImage::Format format);

/// Throws the same Failure without taking memory.
void checkPageSize(std::int64_t width, std::int64_t height, int bytesPerPixel);

/// A page that needs less than this is decoded as far as its file goes, whatever the file claims.
inline constexpr double smallestClaim = 1 << 26;

/// Throws Failure when `stored` bytes cannot hold a page of that size, whose rows have `bytesPerPixel` when
/// they are decompressed: `ratio` is the most that the compression makes of a byte.
void checkClaim(double width, double height, double bytesPerPixel, double stored, double ratio);

} // namespace quillfern::raster
