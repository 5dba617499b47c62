#include "batch/Process.h"

#include "batch/DocumentInWork.h"
#include "batch/JobWarnings.h"
#include "platform/pdf/PdfPageCount.h"
#include "platform/store/TemporaryNames.h"
#include "platform/system/Cancellation.h"
#include "platform/system/Guarded.h"

namespace quillfern {

Process::Process(ProcessServices services, Job job, ProcessObserver& observer)
    : services_(std::move(services)), job_(std::move(job)), observer_(observer),
      log_(services_.clock, services_.folders)
{
}

QString Process::read(const QString& field) const
{
    const std::lock_guard lock(mutex_);
    return field;
}

void Process::write(QString& field, const QString& value)
{
    const std::lock_guard lock(mutex_);
    field = value;
}

void Process::viewLog()
{
    guarded("Error in (Process=>viewLog) : %@", [this] {
        if (isCompleted_ && log_.logFilePath()) services_.desktop.open(*log_.logFilePath());
    });
}

void Process::postLabel()
{
    const QString text =
        timeTakenLabel(timeTaken(), totalFileProcessed_, static_cast<int>(outputFiles().size()));
    services_.mainThread.postAndWait([&] { observer_.updateTimeTakenLabel(text); });
}

namespace {

bool isPdf(const FileItem& item)
{
    return item.type().toUpper() == QLatin1String("PDF");
}

} // namespace

void Process::start()
{
    isCompleted_ = false;
    failed_ = false;
    log_.startTime = services_.clock.now();
    write(message_, QString());
    try {
        collisions_ = findCollisions(outputFiles(), [this] { return isCombining_.load(); });
        store::removeLeftovers(job_.outputFolder);
        const auto processors = services_.makeProcessors(job_.configuration);
        JobRun run(
            job_.configuration, [this] { ++totalPagesProcessed_; }, abandon_.get_token());
        if (job_.configuration.isContinuousNumbering) run.totalPages = job_.totalPages;
        for (std::size_t i = 0; i < outputFiles().size() && isCombining_; ++i)
            runOutput(i, *processors, run);
    } catch (...) {
        logLine(failureLine("Error in (Process=>start) : %@", reasonOfCurrentException()));
        failed_ = true;
    }
    finish();
}

void Process::runOutput(std::size_t index, DocumentProcessors& processors, JobRun& run)
{
    const FilePath& target = outputFiles()[index].filename();
    log_.files.push_back({target.name(), target.parent().text(), {}, 0, {}});
    LogFiles& record = log_.files.back();
    write(outputFileInProcess_, target.name());
    try {
        for (const FileItem& item : outputFiles()[index].fileItems()) {
            if (!isCombining_) break;
            record.source = item.filePath();
            if (item.pages() > 0) record.pages = item.pages();
            record.outcome = runItem(item, index, processors, run);
        }
    } catch (...) {
        failed_ = true;
        record.outcome = FileOutcome::without(FileStatus::Refused, currentReason());
        logLine(failureLine("Error in (Process=>start) : %@",
                            QStringLiteral("%1: %2").arg(target.readable(), record.outcome.remark->logged)));
    }
    write(outputFileInProcess_, QString());
    services_.mainThread.postAndWait([&] { observer_.outputFinished(record); });
}

namespace {

/// Why the list counted no pages of the file; no reason when the file can be read by now.
std::optional<Reason> reasonForNoPages(const FileItem& item, const pdf::Passwords& passwords,
                                       const std::stop_token& stop)
{
    if (isPdf(item)) {
        const auto problem = pdf::pdfProblem(item.filePath(), stop, passwords);
        return problem ? std::optional(whyNotOpened(item.filePath(), *problem)) : std::nullopt;
    }
    return Reason(QT_TRANSLATE_NOOP("quillfern::Failure",
                                    "The file is not there or holds no picture that can be read."));
}

} // namespace

FileOutcome Process::runItem(const FileItem& item, std::size_t index, DocumentProcessors& processors,
                             JobRun& run)
{
    if (item.pages() <= 0) {
        std::optional<Reason> reason;
        try {
            const JobOptions& options = job_.configuration.options;
            pdf::Passwords passwords;
            if (options.usePasswords) passwords.texts = {item.pdfOpenPassword(), options.password};
            reason = reasonForNoPages(item, passwords, run.abandoned());
        } catch (const Cancelled& given) {
            return FileOutcome::without(FileStatus::Cancelled, given.reasons());
        }
        if (reason) logLine(QStringLiteral("%1: %2").arg(item.filePath().readable(), reason->logged));
        return {FileStatus::NoPages, reason, 0, std::nullopt};
    }
    const Collision& collision = collisions_[index];
    if (!collision.overwritesInput.isEmpty())
        throw Failure(
            {QT_TRANSLATE_NOOP("quillfern::Failure",
                               "No copy was made: it would overwrite another file of the list, %1."),
             {collision.overwritesInput.readable()}});
    if (!collision.stampedAs.isEmpty())
        return FileOutcome::without(
            FileStatus::Refused,
            {QT_TRANSLATE_NOOP(
                 "quillfern::Failure",
                 "It was not stamped: it was the same file as %1 of the list when the job began."),
             {collision.stampedAs.readable()}});
    run.sourceVersion = collision.version;
    const bool isContinuous = job_.configuration.isContinuousNumbering;
    const FilePath& source = item.filePath();
    const FilePath& target = outputFiles()[index].filename();
    write(fileInProcess_, item.name());
    if (!isContinuous) run.totalPages = item.pages();

    run.isTargetOfThisJob = written_.contains(target);
    const QString password = job_.configuration.options.usePasswords ? item.pdfOpenPassword() : QString();
    FileOutcome outcome = isPdf(item) ? processors.processPDF(source, target, password, run)
                                      : processors.processTIFF(source, target, run, item.compression());
    if (!isContinuous) run.reset();
    ++totalFileProcessed_;
    postLabel();
    if (outcome.countsAsCreated()) ++totalFileCreated_;
    addRemarks(outcome, item, target, isContinuous);
    return outcome;
}

void Process::addRemarks(FileOutcome& outcome, const FileItem& item, const FilePath& target,
                         bool isContinuous)
{
    if (!isContinuous) outcome.lostNumbers.reset(); // the next file begins at the start number anyway
    if (outcome.lostNumbers) {
        const Reason lost = lostNumbersText(*outcome.lostNumbers);
        logLine(QStringLiteral("%1: %2").arg(item.filePath().readable(), lost.logged));
        outcome.add(lost);
    }
    if (outcome.status != FileStatus::Created) return;
    const auto earlier = written_.constFind(target);
    if (earlier != written_.constEnd()) {
        outcome.replacesCopy = true;
        const Reason replaces(QT_TRANSLATE_NOOP("quillfern::Failure", "This copy replaces the copy of %1."),
                              {earlier->readable()});
        logNotice(QStringLiteral("%1: %2").arg(target.readable(), replaces.logged));
        outcome.add(replaces);
    }
    written_.insert(target, item.filePath());
}

QString Process::resultMessage() const
{
    if (failed_)
        return tr("%1 unable able to process some of the files!\r\nPlease check log for more information.")
            .arg(getAppTitle());
    if (!isCombining_) return tr("Process cancelled!");
    const std::int32_t created = totalFileCreated_;
    if (static_cast<std::size_t>(created) != outputFiles().size())
        return tr("Total %1 files processed successfully.").arg(created);
    return tr("All files processed successfully.");
}

void Process::finish()
{
    log_.endTime = services_.clock.now();
    log_.save();
    write(message_, resultMessage());
    write(timeTaken_, timeTakenString(log_.startTime, log_.endTime));
    write(fileInProcess_, QString());
    write(outputFileInProcess_, QString());
    isCombining_ = false;
    postLabel();
    if (job_.isOpenFolderAfterConversion && totalFileCreated_ > 0) services_.desktop.open(job_.outputFolder);
    isCompleted_ = true;
}

} // namespace quillfern
