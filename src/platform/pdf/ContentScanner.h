#pragma once

#include "platform/pdf/ContentBalance.h"
#include "platform/pdf/PlainStreams.h"

#include <QByteArray>
#include <condition_variable>
#include <deque>
#include <exception>
#include <memory>
#include <mutex>
#include <qpdf/QPDFObjectHandle.hh>
#include <span>
#include <stop_token>
#include <thread>
#include <vector>

namespace quillfern::pdf {

/// Reads the content of pages on a thread beside the one that owns the document, as soon as there is enough
/// of it. The streams' bytes are taken out of the document at once, on the caller's thread; they are inflated
/// and read on the other thread, and by the caller itself while it waits for a result; by the caller alone
/// where the system allows no further thread.
class ContentScanner
{
  public:
    struct Result
    {
        ContentBalance balance;
        /// Only where the content is damaged or has stray restores: as much of it as can be decoded, with
        /// those blanked out.
        QByteArray mended;
        /// Nothing of the content can be decoded, or something else than its filters say.
        bool undecodable = false;
    };

    /// The task of reading one page's content, with its result.
    class Scan;

    /// `plain` is borrowed. Reading ends with Cancelled once `stop` is stopped.
    explicit ContentScanner(PlainStreams& plain, std::stop_token stop = {});
    ~ContentScanner();
    ContentScanner(const ContentScanner&) = delete;
    ContentScanner& operator=(const ContentScanner&) = delete;

    /// Of content that cannot be decoded nothing is known but that.
    [[nodiscard]] std::shared_ptr<Scan> scan(const std::vector<QPDFObjectHandle>& streams);
    /// The same for streams that are plain.
    [[nodiscard]] std::shared_ptr<Scan> scan(std::span<const PlainStreams::Place> places);
    /// Waits for the result. Throws Failure for content that is too large or nested too deeply.
    [[nodiscard]] const Result& resultOf(Scan& scan);

  private:
    void queue(const std::shared_ptr<Scan>& scan);
    void work();
    std::shared_ptr<Scan> takeNext();
    void finish(Scan& scan);

    PlainStreams& plain_;
    std::stop_token stop_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::shared_ptr<Scan>> waiting_;
    bool stopping_ = false;
    std::thread worker_; ///< none where the system refuses it
};

} // namespace quillfern::pdf
