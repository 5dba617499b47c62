#pragma once

#include "batch/Log.h"
#include "platform/system/Failure.h"

#include <vector>

namespace quillfern {

/// What nobody may overlook although it does not show in the job's message: files that gave no output, copies
/// that replaced another file's, numbers that appear in no file. One sentence each; none for a job without
/// such files.
[[nodiscard]] std::vector<Reason> jobWarnings(const std::vector<LogFiles>& files);

/// "The numbers 101 to 140 appear in no file."
[[nodiscard]] Reason lostNumbersText(const NumbersUsed& numbers);

} // namespace quillfern
