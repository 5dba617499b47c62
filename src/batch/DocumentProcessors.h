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
/// advance the run that they are handed and change nothing else of the job.
class DocumentProcessors
{
  public:
    virtual ~DocumentProcessors() = default;

    /// Stamps a PDF file. A file that cannot be opened as a PDF creates nothing and has not failed.
    [[nodiscard]] virtual FileOutcome processPDF(const FilePath& source, const FilePath& target,
                                                 const QString& password, JobRun& run) = 0;
    /// Stamps any other file into a multi-page TIFF. `compression` is the TIFF code for the output; on pages
    /// that it does not suit LZW takes its place.
    [[nodiscard]] virtual FileOutcome processTIFF(const FilePath& source, const FilePath& target, JobRun& run,
                                                  std::int32_t compression) = 0;
};

/// Makes the processors of a job; called on the thread that is to use them. The configuration outlives them.
using DocumentProcessorsFactory =
    std::function<std::unique_ptr<DocumentProcessors>(const JobConfiguration& job)>;

/// The real ones.
[[nodiscard]] std::unique_ptr<DocumentProcessors> makeDocumentProcessors(const JobConfiguration& job);

} // namespace quillfern
