#pragma once

#include "batch/JobPart.h"
#include "batch/OutputFile.h"
#include "batch/OutputNames.h"
#include "config/JobConfiguration.h"
#include "config/Settings.h"
#include "filelist/FileItem.h"
#include "platform/system/FilePath.h"

#include <QDate>
#include <QString>
#include <cstdint>
#include <optional>
#include <vector>

namespace quillfern {

/// A job as it was planned, with everything that its run needs. Later changes by the user do not affect the
/// job.
struct Job
{
    JobConfiguration configuration;
    std::vector<OutputFile> outputFiles; ///< in list order
    std::int64_t totalPages = 0;         ///< of the whole list
    FilePath outputFolder;
    /// How the copies get their names; none for a job whose copies have the names of their sources and
    /// replace what stands there.
    std::optional<OutputNames> names;
    bool isOpenFolderAfterConversion = false;
    std::optional<JobPart> part; ///< the outputs that are made here; none: all (see partOf())
};

/// Throws Failure with the text of an alert when a job cannot write into this output folder. `path` is the
/// text that the settings hold.
void requireOutputFolder(const std::optional<QString>& path);

/// Throws Failure when there are too little memory or too few threads to begin any job: Qt's fonts crash
/// where memory fails, and Qt's images wait for ever for a thread that the system refuses. What is needed
/// beyond this is checked file by file. Main thread.
void requireResources();

/// Plans a job over the whole list, checked or not: one output of the same name in the settings' output
/// folder for each file, in list order. With options the unchecked files are left out, and the outputs have
/// the names that the page counts predict; `date` is the day that stands in them.
[[nodiscard]] Job planJob(const std::vector<FileItem>& files, const Settings& settings,
                          const QDate& date = QDate::currentDate());

} // namespace quillfern
