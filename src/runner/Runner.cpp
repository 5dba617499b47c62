#include "runner/Runner.h"

#include "batch/Job.h"
#include "batch/JobCheck.h"
#include "batch/JobIndex.h"
#include "batch/JobWarnings.h"
#include "config/Profile.h"
#include "filelist/AllowedFileTypes.h"
#include "filelist/FileListExport.h"
#include "filelist/KnownCounts.h"
#include "platform/store/AtomicFile.h"
#include "platform/system/Failure.h"
#include "platform/system/FileAccess.h"
#include "platform/system/FileFacts.h"
#include "platform/system/FileIdentity.h"
#include "platform/system/NativePath.h"
#include "platform/system/TimeTaken.h"
#include "runner/InputGathering.h"
#include "runner/JsonReport.h"
#include "runner/SideOutputs.h"
#include "runner/TextReport.h"
#include "runner/Worker.h"

#include <algorithm>

namespace quillfern {

Runner::Runner(ProcessServices services, QTextStream& out, QTextStream& err, bool showProgress)
    : services_(std::move(services)), out_(out), err_(err), progress_(err, showProgress),
      report_(std::make_unique<TextReport>(out, err, false))
{
}

Runner::~Runner() = default;

namespace {

std::shared_ptr<const KnownCounts> readCounts(const FilePath& path)
{
    try {
        return std::make_shared<const KnownCounts>(readRegularFile(path)->read(KnownCounts::largestText));
    } catch (const Failure& failure) {
        throw WrongUse(QStringLiteral("the page counts in \"%1\" cannot be used: %2 (--counts)")
                           .arg(path.readable(), failure.reason()));
    }
}

} // namespace

void Runner::gather(const RunnerOptions& options, FileList& files, const StopRequests& stopRequests)
{
    InputGathering gathering(files, services_.mainThread, services_.clock);
    const auto goOn = [&] { return stopRequests() == 0; };
    if (!options.counts.isEmpty()) gathering.setKnownCounts(readCounts(options.counts));
    std::vector<Remark> remarks;
    const std::vector<Arguments> requests = requestsFor(options, goOn, remarks);
    for (const Remark& remark : remarks)
        report_->remark(remark);
    gathering.gather(requests, [&] {
        progress_.show(QStringLiteral("%1 files found").arg(files.count()));
        return goOn();
    });
    progress_.clear();
    if (!goOn() && (files.empty() || options.onlyExport))
        throw Failure(QStringLiteral("The search for files was stopped. Nothing was written."));
    if (files.empty()) throw WrongUse(QStringLiteral("the folders named hold no files to stamp"));
}

void Runner::writeCounts(const FilePath& path, const FileList& files, const Settings& settings)
{
    const JobOptions& options = settings.number->options();
    std::vector<FileItem> items = files.copies();
    if (options.usePasswords)
        for (FileItem& item : items)
            item.countUnlocked(options.password);
    try {
        store::AtomicFile::writeWhole(path, KnownCounts::text(items));
    } catch (const Failure& failure) {
        throw WrongUse(QStringLiteral("the page counts cannot be written to \"%1\" (--save-counts): %2")
                           .arg(path.readable(), failure.reason()));
    }
    report_->listWritten(path, files.totals());
}

void Runner::writeExport(const FilePath& path, const FileList& files)
{
    if (!exportList(files, path))
        throw WrongUse(
            QStringLiteral("the list cannot be written to \"%1\" (--export)").arg(path.readable()));
    report_->listWritten(path, files.totals());
}

void Runner::tell(const std::vector<JobFinding>& findings, bool isStrict)
{
    for (const JobFinding& finding : findings)
        report_->finding(finding);
    const auto worst = worstOf(findings);
    if (worst == FindingSeverity::Stop || (isStrict && worst == FindingSeverity::Ask))
        throw Failure(QStringLiteral("the job was not begun, and nothing was written"));
}

namespace {

/// No job of the runner makes plain copies by mistake; nobody can be asked.
constexpr CheckRules runnerRules{true, true};

/// A forgotten value makes the next word, a document, the file that an option writes. Throws WrongUse.
void requireSpared(const RunnerOptions& options, const FilePath& index)
{
    const auto check = [](const char* option, const FilePath& path, bool isPicture) {
        const QString type = path.extension().toLower();
        if (path.isEmpty() || !isNameTaken(path) || !allowedFileTypes().contains(type)) return;
        if (isPicture && type == QLatin1String("png")) return; // an earlier preview
        throw WrongUse(QStringLiteral("--%1 would overwrite \"%2\", which is a document or a picture")
                           .arg(QLatin1String(option), path.readable()));
    };
    check("export", options.exportFile, false);
    check("save-counts", options.saveCounts, false);
    check("index", index, false);
    check("save-profile", options.saveProfile, false);
    check("preview", options.preview, true);
    for (const QString& input : options.inputs)
        if (!options.preview.isEmpty() && isSameFile(options.preview, FilePath::fromText(input)))
            throw WrongUse(QStringLiteral("--preview would overwrite the file \"%1\", which is to be stamped")
                               .arg(options.preview.readable()));
}

/// Makes sure that the copies can be written into the folder, as far as that is seen before; returns whether
/// the folder has yet to be made. Throws WrongUse.
bool requireOutput(const FilePath& folder)
{
    const FilePath parent = folder.parent();
    if (!isNameTaken(folder) && fileKind(parent) == FileKind::Folder && mayWriteInto(parent)) return true;
    try {
        requireOutputFolder(folder.text());
    } catch (const Failure& failure) {
        QString text = failure.reason();
        throw WrongUse(text.replace(QStringLiteral("\r\n"), QStringLiteral(" ")) +
                       QStringLiteral(" (--output)"));
    }
    return false;
}

/// A job whose index can only fail to be written does not begin. Throws WrongUse.
void requireIndex(const Job& job)
{
    const auto index = indexPath(job);
    if (!index) return;
    const FilePath folder = index->parent();
    if (fileKind(folder) != FileKind::Folder || !mayWriteInto(folder))
        throw WrongUse(
            QStringLiteral("the index cannot be written into \"%1\" (--index)").arg(folder.readable()));
}

} // namespace

int Runner::run(const QStringList& arguments, const StopRequests& stopRequests)
{
    int status = SomeNotCreated;
    std::optional<QString> problem;
    // A program that reads the report also reads what is wrong with the rest of the command line.
    if (arguments.contains(QStringLiteral("--json"))) report_ = std::make_unique<JsonReport>(out_, false);
    try {
        Settings settings;
        settings.isOpenFolderAfterConversion = false;
        const RunnerOptions options = parseRunnerOptions(arguments, settings);
        if (options.json)
            report_ = std::make_unique<JsonReport>(out_, options.quiet);
        else
            report_ = std::make_unique<TextReport>(out_, err_, options.quiet);
        if (options.quiet) progress_.hide();
        requireSpared(options, settings.number->options().indexFile);
        requireResources();
        status = follow(options, settings, stopRequests);
    } catch (const WrongUse& wrongUse) {
        problem = wrongUse.reason();
        status = CommandNotFollowed;
    } catch (const std::exception&) {
        problem = reasonOfCurrentException();
    }
    progress_.clear();
    report_->ended(status, problem);
    return status;
}

int Runner::follow(const RunnerOptions& options, Settings& settings, const StopRequests& stopRequests)
{
    FileList files;
    if (options.onlyExport) {
        gather(options, files, stopRequests);
        if (!options.exportFile.isEmpty()) writeExport(options.exportFile, files);
        if (!options.saveCounts.isEmpty()) writeCounts(options.saveCounts, files, settings);
        return AllCreated;
    }
    if (!options.saveProfile.isEmpty()) saveProfile(*settings.number, options.saveProfile);
    if (!options.preview.isEmpty()) {
        if (options.namesFiles()) gather(options, files, stopRequests);
        if (!preview(settings, options, files)) ++outputsMissing_;
    }
    if (!options.asksForJob()) return outputsMissing_ == 0 ? AllCreated : SomeNotCreated;
    const FilePath output = FilePath::fromText(*settings.outputFolderPath);
    settings.outputFolderPath = output.text();
    const bool isChecked = options.check || options.strict;
    const bool isOutputMissing = !options.check && requireOutput(output);
    for (const Remark& remark : options.remarks)
        report_->remark(remark);
    if (!isChecked) tell(JobCheck(plan(options, settings, files), runnerRules).ofStamps(), false);
    gather(options, files, stopRequests);
    if (isChecked) {
        const int status = check(options, settings, files, stopRequests);
        if (options.check) return status;
    }
    if (!options.exportFile.isEmpty() && stopRequests() == 0) writeExport(options.exportFile, files);
    if (!options.saveCounts.isEmpty() && stopRequests() == 0)
        writeCounts(options.saveCounts, files, settings);

    if (isOutputMissing && !makeFolders(output))
        throw WrongUse(QStringLiteral("the folder \"%1\" cannot be made (--output)").arg(output.readable()));
    Job job = plan(options, settings, files);
    requireIndex(job);
    services_.folders.createApplicationUsersFolder(QStringLiteral("Logs"));
    services_.filesAtOnce = options.filesAtOnce;
    Process process(services_, std::move(job), *this);
    runJob(process, stopRequests);
    return report(process);
}

Job Runner::plan(const RunnerOptions& options, Settings& settings, const FileList& files) const
{
    Job job = planJob(files.copies(), settings, services_.clock.now().date());
    job.configuration.isWrittenAnew = options.rewrite;
    job.configuration.refusesSigned = options.refuseSigned;
    if (options.parts > 0 || !options.counts.isEmpty())
        takePart(job, std::max(options.part, 1), std::max(options.parts, 1));
    return job;
}

int Runner::check(const RunnerOptions& options, Settings& settings, const FileList& files,
                  const StopRequests& stopRequests)
{
    const Job job = plan(options, settings, files);
    std::vector<JobFinding> findings;
    std::exception_ptr problem;
    std::stop_source stop;
    runOnWorker(
        [&] {
            try {
                findings = JobCheck(job, runnerRules).findings(stop.get_token());
            } catch (...) {
                problem = std::current_exception();
            }
        },
        [&] {
            if (stopRequests() > 0) stop.request_stop();
        });
    if (stop.stop_requested()) throw Failure(QStringLiteral("The check was stopped. Nothing was written."));
    if (problem) std::rethrow_exception(problem);
    if (!options.check) {
        tell(findings, true);
        return AllCreated;
    }
    for (const JobFinding& finding : findings)
        report_->finding(finding);
    const auto worst = worstOf(findings);
    return worst && *worst != FindingSeverity::Note ? SomeNotCreated : AllCreated;
}

bool Runner::preview(Settings& settings, const RunnerOptions& options, const FileList& files)
{
    if (drawPreview(settings.number->configuration(), files, options.previewSize, options.preview))
        return true;
    report_->remark({"not-previewed", QStringLiteral("%1 cannot be shown; the preview is of a blank page")
                                          .arg(files.at(0).filePath().readable())});
    return false;
}

void Runner::runJob(Process& process, const StopRequests& stopRequests)
{
    int seen = 0;
    started_ = services_.clock.now();
    outputsFinished_ = static_cast<std::int64_t>(partOf(process.job()).first);
    const auto watch = [&] {
        const int requests = stopRequests();
        if (requests > 0 && seen == 0) {
            process.stop();
            say(QStringLiteral("Stopping after the current file ..."));
        }
        if (requests > 1 && seen < 2) {
            process.abandon();
            say(QStringLiteral("Giving up the current file ..."));
        }
        seen = requests;
        showProgress(process);
    };
    watch(); // the user may have stopped the gathering already
    runOnWorker([&] { process.start(); }, watch);
    progress_.clear();
}

void Runner::say(const QString& line)
{
    progress_.clear();
    err_ << line << '\n';
    err_.flush();
}

void Runner::showProgress(const Process& process)
{
    const QDateTime now = services_.clock.now();
    const std::int64_t done = process.totalPagesProcessed();
    const std::int64_t total = partOf(process.job()).pages;
    QString text = QStringLiteral("%1 of %2 files, %3 of %4 pages")
                       .arg(process.totalFileProcessed())
                       .arg(process.totalFileSelected())
                       .arg(done)
                       .arg(total);
    for (const QString& part :
         {timeTakenString(started_, now).trimmed(), remainingTime(started_.msecsTo(now), done, total),
          printable(readableName(process.fileInProcess()))})
        if (!part.isEmpty()) text += QStringLiteral(", ") + part;
    progress_.show(text);
}

void Runner::updateTimeTakenLabel(const QString&)
{
}

void Runner::outputFinished(const LogFiles& output)
{
    const FileOutcome& outcome = output.outcome;
    const bool hasCopy = outcome.status == FileStatus::Created || outcome.status == FileStatus::Skipped;
    if (!hasCopy || outcome.isFault()) ++outputsMissing_;
    progress_.clear();
    report_->fileDone(++outputsFinished_, output);
}

int Runner::report(const Process& process)
{
    const Log& log = process.log();
    JobSummary job;
    job.message = process.message();
    job.timeTaken = process.timeTaken().trimmed();
    job.seconds = static_cast<double>(log.startTime.msecsTo(log.endTime)) / 1000;
    job.log = log.logFilePath().value_or(FilePath());
    job.isLogged = log.isWritten();
    job.files = process.totalFileSelected();
    job.filesProcessed = process.totalFileProcessed();
    job.filesCreated = process.totalFileCreated();
    job.pages = process.totalPagesProcessed();
    job.warnings = jobWarnings(log.files);
    if (const auto& unwritten = process.indexProblem())
        job.warnings.push_back(*unwritten);
    else
        job.index = indexPath(process.job());
    if (process.partProblem()) job.warnings.push_back(*process.partProblem());
    report_->jobDone(job);
    const bool all = job.isLogged && !process.indexProblem() && !process.partProblem() &&
                     outputsMissing_ == 0 &&
                     log.files.size() == static_cast<std::size_t>(process.totalFileSelected());
    return all ? AllCreated : SomeNotCreated;
}

} // namespace quillfern
