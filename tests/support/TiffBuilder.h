#pragma once

#include "support/Tools.h"

#include <cstdint>
#include <map>
#include <vector>

namespace quillfern {

/// How a test stores a picture in a TIFF; the values are the file format's own.
struct TiffLayout
{
    int photometric = 2; ///< 0 and 1 grey, 2 RGB, 3 palette, 5 CMYK, 6 YCbCr
    int bits = 8;
    int compression = 1;
    int orientation = 1;
    bool planar = false;
    bool tiled = false;
    int extraSample = -1; ///< 1 associated alpha, 2 unassociated, 9 unassociated but not stated; -1 none
    double xResolution = 0;
    double yResolution = 0;
    int resolutionUnit = 2;
    double floatRange = 0; ///< samples are floating-point numbers up to this one
    bool isSigned = false; ///< samples are said to be signed numbers
    int predictor = 1;
    int fillOrder = 1;                   ///< 2 for low bits first
    std::map<int, QByteArray> tags = {}; ///< texts, and the bytes of profiles, XMP and IPTC
};

/// Writes TIFF files with libtiff, page by page.
class TiffBuilder
{
  public:
    /// `mode` as for libtiff: "w", "w8" for BigTIFF, "wb" for the other byte order.
    explicit TiffBuilder(const QString& path, const char* mode = "w");
    ~TiffBuilder();
    TiffBuilder(const TiffBuilder&) = delete;
    TiffBuilder& operator=(const TiffBuilder&) = delete;

    /// Stores `picture` (RGBA as shown) as the layout says: turned, reduced to grey, premultiplied ...
    TiffBuilder& page(const QImage& picture, const TiffLayout& layout = {});

  private:
    struct Handle;
    Handle* handle_;
};

/// One page of a TIFF as libtiff reads it.
struct TiffPage
{
    QImage image; ///< RGBA8888; the colours not multiplied by alpha
    std::uint16_t bits = 0;
    std::uint16_t samples = 0;
    std::uint16_t photometric = 0;
    std::uint16_t compression = 0;
    std::uint16_t predictor = 1;
    std::uint16_t resolutionUnit = 0;
    std::uint16_t extraSample = 0;
    float xResolution = 0;
    float yResolution = 0;
    std::map<int, QByteArray> tags; ///< as in a TiffLayout
};

/// All pages of a TIFF; fails the test when it is not one or libtiff has anything to complain about.
std::vector<TiffPage> readTiff(const QString& path);

/// A TIFF whose only page is a JPEG stream kept in the old way, compression 6.
QByteArray oldJpegTiff(const QByteArray& jpeg, int width, int height);

} // namespace quillfern
