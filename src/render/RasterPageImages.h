#pragma once

#include "platform/pageimages/PageImage.h"

#include <optional>

namespace quillfern {

/// Makes images of the pages of raster files. Throws nothing.
class RasterPageImages final : public pageimages::PageImageSource
{
  public:
    [[nodiscard]] std::optional<pageimages::PageImage>
    page(const pageimages::PageImageRequest& request) override;
};

} // namespace quillfern
