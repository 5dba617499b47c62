#include "platform/pageimages/PageImage.h"

#include <algorithm>
#include <cmath>

namespace quillfern::pageimages {

namespace {

constexpr double largestSide = 16384; // pixels, more than any screen has

} // namespace

double pixelsPerPoint(const QSizeF& page, const PageImageRequest& request)
{
    const double fit = std::min(request.box.width() / page.width(), request.box.height() / page.height());
    return std::min(fit, 1.0) * request.density;
}

QSize wholePixels(const QSizeF& size)
{
    // Rounded down: a picture that is a fraction of a pixel larger than its place would be scaled when shown.
    const auto pixels = [](double length) {
        return static_cast<int>(std::clamp(std::floor(length + 1e-6), 1.0, largestSide));
    };
    return {pixels(size.width()), pixels(size.height())};
}

QSize pixelSize(const QSizeF& page, const PageImageRequest& request)
{
    const QSizeF size = page * pixelsPerPoint(page, request);
    const QSizeF rounded(std::round(size.width()), std::round(size.height()));
    return wholePixels(rounded).boundedTo(wholePixels(request.box * request.density));
}

bool isShowable(const PageImageRequest& request)
{
    const auto side = [&](double length) { return length >= 1 && length * request.density <= largestSide; };
    return request.page >= 0 && request.density > 0 && side(request.box.width()) &&
           side(request.box.height());
}

} // namespace quillfern::pageimages
