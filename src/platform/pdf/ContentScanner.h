#pragma once

#include "platform/pdf/ContentBalance.h"

#include <QThreadPool>
#include <future>
#include <qpdf/QPDFObjectHandle.hh>

namespace quillfern {

/// Reads the content of pages on a thread beside the one that owns the document. The streams' bytes are taken
/// out of the document at once, on the caller's thread; inflating and reading them is the other thread's
/// work.
class ContentScanner
{
  public:
    struct Result
    {
        ContentBalance balance;
        /// Only where the content has stray restores: the whole content with those blanked out.
        QByteArray mended;
    };

    ContentScanner();
    ~ContentScanner();

    /// The future throws Failure for content beyond all reason. Content in a form that cannot be decoded
    /// counts as sound: nothing better can be known of it.
    [[nodiscard]] std::shared_future<Result> scan(const std::vector<QPDFObjectHandle>& streams);

  private:
    QThreadPool pool_;
};

} // namespace quillfern
