#pragma once

#include "platform/pdf/ContentBalance.h"

#include <condition_variable>
#include <deque>
#include <exception>
#include <memory>
#include <mutex>
#include <qpdf/QPDFObjectHandle.hh>
#include <thread>

namespace quillfern::pdf {

/// Reads the content of pages on a thread beside the one that owns the document. The streams' bytes are taken
/// out of the document at once, on the caller's thread; inflating and reading them is the other thread's
/// work, and the caller's own while it has nothing better to do than wait.
class ContentScanner
{
  public:
    struct Result
    {
        ContentBalance balance;
        /// Only where the content has stray restores: the whole content with those blanked out.
        QByteArray mended;
    };

    /// The reading of one page's content, now or later.
    class Scan;

    ContentScanner();
    ~ContentScanner();
    ContentScanner(const ContentScanner&) = delete;
    ContentScanner& operator=(const ContentScanner&) = delete;

    /// Content in a form that cannot be decoded counts as sound: nothing better can be known of it.
    [[nodiscard]] std::shared_ptr<Scan> scan(const std::vector<QPDFObjectHandle>& streams);
    /// The result, once it is there. Throws Failure for content beyond all reason.
    [[nodiscard]] const Result& resultOf(Scan& scan);

  private:
    void work();
    std::shared_ptr<Scan> takeNext();
    void finish(Scan& scan);

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::shared_ptr<Scan>> waiting_;
    bool stopping_ = false;
    std::thread worker_;
};

} // namespace quillfern::pdf
