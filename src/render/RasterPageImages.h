#pragma once

#include "platform/pageimages/PageImage.h"

namespace quillfern {

/// Shows pages of raster files. Throws nothing.
class RasterPageImages final : public PageImageSource
{
  public:
    [[nodiscard]] std::optional<PageImage> page(const PageImageRequest& request) override;
};

} // namespace quillfern
