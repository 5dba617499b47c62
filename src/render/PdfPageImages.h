#pragma once

#include "platform/pageimages/PageImage.h"

namespace quillfern {

/// Shows pages of PDF files. Throws nothing; the time and memory it takes are up to the file.
class PdfPageImages final : public PageImageSource
{
  public:
    [[nodiscard]] std::optional<PageImage> page(const PageImageRequest& request) override;
};

} // namespace quillfern
