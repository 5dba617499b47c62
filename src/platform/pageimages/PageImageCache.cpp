#include "platform/pageimages/PageImageCache.h"

#include <algorithm>

namespace quillfern::pageimages {

qint64 PageImageCache::Entry::bytes() const
{
    constexpr qint64 bookkeeping = 1024;
    return bookkeeping + (page ? qint64{page->image.sizeInBytes()} : 0);
}

std::optional<PageImage> PageImageCache::page(const PageImageRequest& request)
{
    // The version is taken before the page is read: a file that changes meanwhile is read again the next
    // time.
    const auto version = fileVersion(request.path);
    if (!version) return std::nullopt;
    // Links and other names for the file share its entry.
    const auto isIt = [&](const Entry& entry) {
        return entry.version.identity == version->identity && entry.request.page == request.page &&
               entry.request.box == request.box && entry.request.density == request.density &&
               entry.request.visiblePage == request.visiblePage && entry.request.password == request.password;
    };
    const auto found = std::find_if(entries_.begin(), entries_.end(), isIt);
    if (found != entries_.end() && found->version == *version) {
        entries_.splice(entries_.begin(), entries_, found);
        return entries_.front().page;
    }
    if (found != entries_.end()) {
        bytes_ -= found->bytes();
        entries_.erase(found);
    }
    entries_.push_front({request, *version, source_.page(request)});
    bytes_ += entries_.front().bytes();
    while (bytes_ > mostBytes_ && entries_.size() > 1)
        forgetOldest();
    return entries_.front().page;
}

void PageImageCache::forgetOldest()
{
    bytes_ -= entries_.back().bytes();
    entries_.pop_back();
}

} // namespace quillfern::pageimages
