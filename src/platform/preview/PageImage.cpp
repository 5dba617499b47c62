#include "platform/preview/PageImage.h"

#include <algorithm>
#include <cmath>

namespace quillfern {

namespace {

constexpr double largestSide = 16384; // pixels, more than any screen has

} // namespace

double pixelsPerPoint(const QSizeF& page, const PageImageRequest& request)
{
    const double fit = std::min(request.box.width() / page.width(), request.box.height() / page.height());
    return std::min(fit, 1.0) * request.density;
}

QSize pixelSize(const QSizeF& page, const PageImageRequest& request)
{
    const QSizeF size = page * pixelsPerPoint(page, request);
    const auto pixels = [](double length) {
        return static_cast<int>(std::clamp(std::round(length), 1.0, largestSide));
    };
    return {pixels(size.width()), pixels(size.height())};
}

bool isShowable(const PageImageRequest& request)
{
    const auto side = [&](double length) { return length >= 1 && length * request.density <= largestSide; };
    return request.page >= 0 && request.density > 0 && side(request.box.width()) &&
           side(request.box.height());
}

} // namespace quillfern
