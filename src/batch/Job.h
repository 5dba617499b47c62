#pragma once

#include "batch/OutputFile.h"
#include "config/JobConfiguration.h"
#include "config/Settings.h"
#include "platform/system/FilePath.h"

#include <QString>
#include <cstdint>
#include <optional>
#include <vector>

namespace quillfern {

/// A job as it was planned: everything that its run goes by. What the user changes afterwards does not reach
/// it.
struct Job
{
    JobConfiguration configuration;
    std::vector<OutputFile> outputFiles; ///< in list order
    std::int64_t totalPages = 0;         ///< of the whole list
    FilePath outputFolder;
    bool isOpenFolderAfterConversion = false;
};

/// Throws Failure with the words for an alert when a job cannot write into this output folder, a text as
/// settings hold it.
void requireOutputFolder(const std::optional<QString>& path);

/// Plans a job over the whole list, checked or not: one output of the same name in the settings' output
/// folder for each file, in list order.
[[nodiscard]] Job planJob(const std::vector<FileItem>& files, const Settings& settings);

} // namespace quillfern
