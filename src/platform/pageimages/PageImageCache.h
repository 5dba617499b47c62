#pragma once

#include "platform/pageimages/PageImage.h"
#include "platform/system/FileIdentity.h"

#include <QtGlobal>
#include <list>
#include <optional>

namespace quillfern::pageimages {

/// Keeps the results for the pages last asked for, failures included, for as long as their files stay the
/// same. The source must outlive it. For use from one thread.
class PageImageCache final : public PageImageSource
{
  public:
    explicit PageImageCache(PageImageSource& source, qint64 mostBytes = qint64{96} << 20)
        : source_(source), mostBytes_(mostBytes)
    {
    }

    [[nodiscard]] std::optional<PageImage> page(const PageImageRequest& request) override;

  private:
    struct Entry
    {
        PageImageRequest request;
        FileVersion version;
        std::optional<PageImage> page;

        [[nodiscard]] qint64 bytes() const;
    };

    void forgetOldest();

    PageImageSource& source_;
    qint64 mostBytes_;
    qint64 bytes_ = 0;
    std::list<Entry> entries_; ///< the one last used first
};

} // namespace quillfern::pageimages
