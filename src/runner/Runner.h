#pragma once

#include "batch/Job.h"
#include "batch/JobFinding.h"
#include "batch/Log.h"
#include "batch/Process.h"
#include "config/Numbering.h"
#include "config/Settings.h"
#include "filelist/FileList.h"
#include "platform/system/FilePath.h"
#include "runner/ProgressLine.h"
#include "runner/Report.h"
#include "runner/RunnerOptions.h"

#include <QDateTime>
#include <QString>
#include <QStringList>
#include <QTextStream>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace quillfern {

/// Runs jobs without a window: reads a command line, runs the same job as the window would, and prints
/// progress and results as text. Main thread; needs an application object with an event loop.
class Runner final : public ProcessObserver
{
  public:
    enum ExitStatus { AllCreated = 0, SomeNotCreated = 1, CommandNotFollowed = 2 };

    /// Results go to `out`, problems and progress to `err`; progress only when `showProgress`, for which
    /// `err` has to be a terminal. All outlive the runner.
    Runner(ProcessServices services, QTextStream& out, QTextStream& err, bool showProgress);
    ~Runner() override;

    /// How often the user has asked the program to stop; called now and then.
    using StopRequests = std::function<int()>;

    /// Runs one command line to its end and returns the exit status. At the first request to stop, gathering
    /// ends at once and a job after the file in work; at the second the job gives up the file in work.
    int run(const QStringList& arguments, const StopRequests& stopRequests);

    void updateTimeTakenLabel(const QString& text) override;
    void outputFinished(const LogFiles& output) override;

  private:
    int follow(const RunnerOptions& options, Settings& settings, const StopRequests& stopRequests);
    /// Tells the findings; throws Failure when the job must not begin with one of them.
    void tell(const std::vector<JobFinding>& findings, bool isStrict);
    int check(const RunnerOptions& options, Settings& settings, const FileList& files,
              const StopRequests& stopRequests);
    [[nodiscard]] Job plan(const RunnerOptions& options, Settings& settings, const FileList& files) const;
    void gather(const RunnerOptions& options, FileList& files, const StopRequests& stopRequests);
    void writeExport(const FilePath& path, const FileList& files);
    void writeCounts(const FilePath& path, const FileList& files, const Settings& settings);
    /// False when a blank page is shown instead of the file.
    bool preview(Settings& settings, const RunnerOptions& options, const FileList& files);
    void runJob(Process& process, const StopRequests& stopRequests);
    void say(const QString& line);
    void showProgress(const Process& process);
    int report(const Process& process);

    ProcessServices services_;
    QTextStream& out_;
    QTextStream& err_;
    ProgressLine progress_;
    std::unique_ptr<Report> report_;
    std::int64_t outputsFinished_ = 0;
    int outputsMissing_ = 0;
    QDateTime started_;
};

} // namespace quillfern
