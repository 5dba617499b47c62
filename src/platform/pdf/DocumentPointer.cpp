#include "platform/pdf/DocumentPointer.h"

#include <list>
#include <mutex>
#include <thread>

namespace quillfern::pdf {

namespace {

class Disposal
{
  public:
    void add(QPDF* document)
    {
        const std::lock_guard lock(mutex_);
        threads_.emplace_back([document] { delete document; });
    }

  private:
    std::mutex mutex_;
    std::list<std::jthread> threads_; ///< of documents that were given up, so few
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
    if (stop_.stop_requested())
        disposal().add(document);
    else
        delete document;
}

} // namespace quillfern::pdf
