#pragma once

#include "batch/FileOutcome.h"
#include "batch/JobRun.h"
#include "platform/system/FilePath.h"

#include <functional>

namespace quillfern {

/// Why a file whose name ends in ".pdf" cannot be opened, `said` being what the attempt gave.
[[nodiscard]] Reason whyNotOpened(const FilePath& source, const Reason& said);

/// What both processors do around their work on one document. A source that does not exist fails before any
/// file is changed; the run is updating while `stamp` runs; an exception of `stamp` becomes a failed outcome
/// and one line of the system log, made from `pattern` with the reason in place of "%@"; Cancelled becomes a
/// cancelled outcome.
[[nodiscard]] FileOutcome processDocument(const char* pattern, const FilePath& source, JobRun& run,
                                          const std::function<FileOutcome()>& stamp);

} // namespace quillfern
