#pragma once

#include "batch/JobRun.h"
#include "batch/StampedDocument.h"
#include "config/JobConfiguration.h"
#include "platform/system/FilePath.h"

#include <QString>
#include <cstdint>
#include <functional>
#include <memory>

namespace quillfern {

namespace pdf {
class SharedCodings;
}

/// The two ways from one source document to one stamped output document. Made and used on one thread. Both
/// advance the run that the caller passes and change nothing else of the job; the document's copy gets its
/// name when the caller commits it.
class DocumentProcessors
{
  public:
    virtual ~DocumentProcessors() = default;

    /// Stamps a PDF file. For a file that cannot be opened as a PDF no copy is created; this counts as
    /// CreatedNothing, not as a failure.
    [[nodiscard]] virtual StampedDocument processPDF(const FilePath& source, const FilePath& target,
                                                     const QString& password, JobRun& run) = 0;
    /// Stamps any other file into a multi-page TIFF. `compression` is the TIFF code for the output; pages
    /// that this code does not suit are written with LZW.
    [[nodiscard]] virtual StampedDocument processTIFF(const FilePath& source, const FilePath& target,
                                                      JobRun& run, std::int32_t compression) = 0;
};

/// Makes processors for a job; called on each thread that uses some. The configuration outlives them; what is
/// coded for one document is there for all documents of the job.
using DocumentProcessorsFactory = std::function<std::unique_ptr<DocumentProcessors>(
    const JobConfiguration& job, const std::shared_ptr<pdf::SharedCodings>& codings)>;

/// The processors of the program; tests use others.
[[nodiscard]] std::unique_ptr<DocumentProcessors>
makeDocumentProcessors(const JobConfiguration& job, const std::shared_ptr<pdf::SharedCodings>& codings = {});

} // namespace quillfern
