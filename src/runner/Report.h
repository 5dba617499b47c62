#pragma once

#include "batch/JobFinding.h"
#include "batch/Log.h"
#include "filelist/FileList.h"
#include "platform/system/FilePath.h"

#include <QString>
#include <cstdint>
#include <optional>
#include <vector>

namespace quillfern {

/// What a person should know of a job before it runs.
struct Remark
{
    const char* id; ///< the same for all remarks of one kind; programs go by it
    QString text;   ///< a sentence
};

/// How a job has ended.
struct JobSummary
{
    QString message;
    QString timeTaken; ///< for people; empty below a second
    double seconds = 0;
    FilePath log;
    bool isLogged = false;         ///< the log is there
    std::optional<FilePath> index; ///< that was written
    std::int64_t files = 0;
    std::int64_t filesProcessed = 0;
    std::int64_t filesCreated = 0;
    std::int64_t pages = 0; ///< that were gone through
    std::vector<Reason> warnings;
};

/// Tells what a run of the runner does, as it happens. One implementation writes for people, one for
/// programs. Main thread.
class Report
{
  public:
    virtual ~Report() = default;
    virtual void remark(const Remark& remark) = 0;
    virtual void finding(const JobFinding& finding) = 0;
    virtual void listWritten(const FilePath& path, const FileTotals& totals) = 0;
    /// A file of the job is done, or was left out. `index` counts the files of the list from 1.
    virtual void fileDone(std::int64_t index, const LogFiles& file) = 0;
    virtual void jobDone(const JobSummary& job) = 0;
    /// The run is over; called once, last. `problem` is why nothing, or nothing more, was done; none for a
    /// job, which may have failed files all the same.
    virtual void ended(int exitStatus, const std::optional<QString>& problem) = 0;
};

} // namespace quillfern
