#pragma once

#include "batch/FileOutcome.h"
#include "batch/JobRun.h"
#include "config/JobConfiguration.h"
#include "platform/system/FilePath.h"

#include <QString>
#include <cstdint>
#include <functional>
#include <memory>

namespace quillfern {

/// The two ways from one source document to one stamped output document. Made and used on one thread. Both
/// advance the run that the caller passes and change nothing else of the job.
class DocumentProcessors
{
  public:
    virtual ~DocumentProcessors() = default;

    /// Stamps a PDF file. For a file that cannot be opened as a PDF no copy is created; this counts as
    /// CreatedNothing, not as a failure.
    [[nodiscard]] virtual FileOutcome processPDF(const FilePath& source, const FilePath& target,
                                                 const QString& password, JobRun& run) = 0;
    /// Stamps any other file into a multi-page TIFF. `compression` is the TIFF code for the output; pages
    /// that this code does not suit are written with LZW.
    [[nodiscard]] virtual FileOutcome processTIFF(const FilePath& source, const FilePath& target, JobRun& run,
                                                  std::int32_t compression) = 0;
};

/// Makes the processors of a job; called on the thread that uses them. The configuration outlives them.
using DocumentProcessorsFactory =
    std::function<std::unique_ptr<DocumentProcessors>(const JobConfiguration& job)>;

/// The processors of the program; tests use others.
[[nodiscard]] std::unique_ptr<DocumentProcessors> makeDocumentProcessors(const JobConfiguration& job);

} // namespace quillfern
