#pragma once

#include <memory>
#include <qpdf/QPDF.hh>
#include <stop_token>
#include <utility>

namespace quillfern::pdf {

/// Frees a document; on a thread of its own when the work on the document was given up, because freeing a
/// large one takes seconds, and the system allows the thread. The program waits for such threads when it
/// ends.
class DocumentDeleter
{
  public:
    DocumentDeleter() = default;
    explicit DocumentDeleter(std::stop_token stop) : stop_(std::move(stop)) {}
    void operator()(QPDF* document) const;

  private:
    std::stop_token stop_;
};

using DocumentPointer = std::unique_ptr<QPDF, DocumentDeleter>;

[[nodiscard]] inline DocumentPointer newDocument(const std::stop_token& stop)
{
    return {new QPDF, DocumentDeleter(stop)};
}

} // namespace quillfern::pdf
