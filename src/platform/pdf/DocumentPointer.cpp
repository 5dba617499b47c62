#include "platform/pdf/DocumentPointer.h"

#include <atomic>
#include <exception>
#include <list>
#include <mutex>
#include <thread>

namespace quillfern::pdf {

namespace {

class Disposal
{
  public:
    /// False when the system allows no further thread; the document is still the caller's then.
    bool add(QPDF* document)
    {
        const std::lock_guard lock(mutex_);
        // A thread that has ended keeps its stack until it is joined.
        threads_.remove_if([](const Freeing& thread) { return thread.hasEnded.load(); });
        try {
            document->closeInputSource(); // whoever gave the document up may need a descriptor now
            Freeing& thread = threads_.emplace_back();
            thread.worker = std::jthread([document, &hasEnded = thread.hasEnded] {
                delete document;
                hasEnded = true;
            });
            return true;
        } catch (const std::exception&) {
            if (!threads_.empty() && !threads_.back().worker.joinable()) threads_.pop_back();
            return false;
        }
    }

  private:
    struct Freeing
    {
        std::atomic<bool> hasEnded = false;
        std::jthread worker; ///< ends before the flag does
    };
    std::mutex mutex_;
    std::list<Freeing> threads_;
};

Disposal& disposal()
{
    // The library's own constants, which freeing a document needs, have to outlive the threads. They are made
    // when the first document is freed.
    static const bool constantsExist = [] {
        QPDF().emptyPDF();
        return true;
    }();
    static Disposal threads;
    static_cast<void>(constantsExist);
    return threads;
}

} // namespace

void DocumentDeleter::operator()(QPDF* document) const
{
    if (!stop_.stop_requested() || !disposal().add(document)) delete document;
}

} // namespace quillfern::pdf
