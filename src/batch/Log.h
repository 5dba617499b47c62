#pragma once

#include "batch/FileOutcome.h"
#include "platform/system/Clock.h"
#include "platform/system/FilePath.h"
#include "platform/system/Folders.h"

#include <QByteArray>
#include <QDateTime>
#include <QLocale>
#include <QString>
#include <cstdint>
#include <optional>
#include <vector>

namespace quillfern {

/// One page of an output document in the log.
struct LogFile
{
    QString sourceFile;
    std::int32_t sourcePageNo = 0;
    std::int32_t targetPageNo = 0;
    QString status;
};

/// One output document in the log; names and paths are in the text form of NativePath.h.
struct LogFiles
{
    QString filename;   ///< the output's file name
    QString targetPath; ///< the folder it is in
    FileOutcome outcome;
    std::int32_t pages = 0; ///< of the source, as the list counted them
    std::vector<LogFile> logFiles;
    FilePath source = {}; ///< the input; for people, not in the log's file
};

/// The word for an outcome in the log: "Completed", "Failed", "No Pages", "Skipped", the reason for a file
/// that was refused, or the empty text for a file that was not begun. English.
[[nodiscard]] QString statusWord(const FileOutcome& outcome);

/// What a job produced. Filled and saved on the job's worker thread; other threads may read the path when the
/// job has completed.
class Log
{
  public:
    /// Start and end are the present time until the job sets them. Both references must outlive the log.
    Log(const Clock& clock, const Folders& folders);

    QDateTime startTime;
    QDateTime endTime;
    std::vector<LogFiles> files;

    /// The file that save() wrote the log to; absent before save().
    [[nodiscard]] const std::optional<FilePath>& logFilePath() const { return logFilePath_; }

    /// Whether the file is there.
    [[nodiscard]] bool isWritten() const { return isWritten_; }

    /// Writes the log as an XML file named from the end time into the folder "Logs" of the application's
    /// folder. The log of another job that ended in the same second is kept beside this one, with "-2" in its
    /// name. Returns false only when no path could be determined. When the file cannot be written, this is
    /// reported in the system log, and the path then names a file that does not exist.
    bool save(const QLocale& locale = QLocale());

  private:
    [[nodiscard]] QByteArray document(const QLocale& locale) const;

    const Folders& folders_;
    std::optional<FilePath> logFilePath_;
    bool isWritten_ = false;
};

} // namespace quillfern
