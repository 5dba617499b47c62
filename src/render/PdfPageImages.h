#pragma once

#include "platform/pageimages/PageImage.h"

namespace quillfern {

/// Shows pages of PDF files. Throws nothing; the time and memory it takes are up to the file.
class PdfPageImages final : public pageimages::PageImageSource
{
  public:
    [[nodiscard]] std::optional<pageimages::PageImage>
    page(const pageimages::PageImageRequest& request) override;
};

} // namespace quillfern
