#pragma once

#include "batch/JobRun.h"
#include "batch/StampedDocument.h"
#include "platform/system/FilePath.h"

#include <functional>

namespace quillfern {

/// Why a file whose name ends in ".pdf" cannot be opened, `said` being what the attempt gave.
[[nodiscard]] Reason whyNotOpened(const FilePath& source, const Reason& said);

/// What both processors do around their work on one document. A source that does not exist fails at once; the
/// run is updating while `stamp` runs, which fills in the document's place, copy and outcome; an exception of
/// `stamp` becomes a failed outcome and one line of the system log, made from `pattern` with the reason in
/// place of "%@"; Cancelled becomes a cancelled outcome.
[[nodiscard]] StampedDocument processDocument(const char* pattern, const FilePath& source, JobRun& run,
                                              const std::function<void(StampedDocument&)>& stamp);

} // namespace quillfern
