#pragma once

#include "platform/system/FilePath.h"

#include <cstdint>
#include <functional>
#include <memory>

namespace quillfern {

class Numbering;

/// The two ways from one source document to one stamped output document. Made and used on the job's worker
/// thread. Both advance the configuration's running number and nothing else of it.
class DocumentProcessors
{
  public:
    virtual ~DocumentProcessors() = default;

    /// Stamps a PDF file. True when the source existed and nothing failed on the way; so also for a file that
    /// cannot be opened as a PDF, which gives no output.
    virtual bool processPDF(const FilePath& source, const FilePath& target, const QString& password,
                            std::int64_t totalPages) = 0;
    /// Stamps any other file into a multi-page TIFF. True only when the output was written.
    virtual bool processTIFF(const FilePath& source, const FilePath& target, std::int64_t totalPages,
                             std::int32_t compression) = 0;

    /// Why the last document failed, or gave no output, in words for people; empty when it went well.
    [[nodiscard]] virtual QString lastProblem() const = 0;
};

/// Called after every page of a document, on the worker thread.
using PageProgress = std::function<void()>;

/// Makes the processors for one run; called on its worker thread.
using DocumentProcessorsFactory =
    std::function<std::unique_ptr<DocumentProcessors>(Numbering& number, PageProgress progress)>;

/// The real ones.
[[nodiscard]] std::unique_ptr<DocumentProcessors> makeDocumentProcessors(Numbering& number,
                                                                         PageProgress progress);

} // namespace quillfern
