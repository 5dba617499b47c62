#pragma once

#include "platform/pageimages/PageImage.h"

#include <optional>

namespace quillfern {

/// Makes images of PDF pages. Throws nothing; time and memory have no limit here and depend on the file.
class PdfPageImages final : public pageimages::PageImageSource
{
  public:
    [[nodiscard]] std::optional<pageimages::PageImage>
    page(const pageimages::PageImageRequest& request) override;
};

} // namespace quillfern
