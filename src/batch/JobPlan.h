#pragma once

#include "batch/Process.h"

#include <optional>

namespace quillfern {

/// What is wrong with an output folder, in words for an alert; nothing when a job can write there. The path
/// is a text as settings hold it.
[[nodiscard]] std::optional<QString> outputFolderProblem(const std::optional<QString>& path);

/// Plans a job over the whole list, checked or not: one output of the same name in the settings' output
/// folder for each file, in list order, and the numbering at its start. Returns the page count of the whole
/// list, which start() wants.
std::int64_t planJob(Process& process, const std::vector<FileItem>& files, Settings& settings);

} // namespace quillfern
