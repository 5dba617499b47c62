#include "batch/Process.h"

#include "batch/DocumentInWork.h"
#include "batch/JobIndex.h"
#include "batch/JobWarnings.h"
#include "platform/pdf/PdfPageCount.h"
#include "platform/pdf/SharedCodings.h"
#include "platform/store/TemporaryNames.h"
#include "platform/system/Cancellation.h"
#include "platform/system/Guarded.h"

#include <thread>

namespace quillfern {

Process::Process(ProcessServices services, Job job, ProcessObserver& observer)
    : services_(std::move(services)), job_(std::move(job)), part_(partOf(job_)), observer_(observer),
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

QString Process::labelText() const
{
    return timeTakenLabel(timeTaken(), totalFileProcessed_, totalFileSelected());
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
        collisions_ = placement_.collisions([this] { return isCombining_.load(); });
        store::removeLeftovers(job_.outputFolder);
        WorkAhead files(job_.configuration, planFiles(), means());
        std::size_t task = 0;
        for (std::size_t i = part_.first; i < part_.end && isCombining_; ++i) {
            runOutput(i, task, files);
            task += outputFiles()[i].fileItems().size();
        }
    } catch (...) {
        logLine(failureLine("Error in (Process=>start) : %@", reasonOfCurrentException()));
        failed_ = true;
    }
    finish();
}

std::vector<PlannedFile> Process::planFiles()
{
    std::vector<PlannedFile> files;
    for (std::size_t i = part_.first; i < part_.end; ++i) {
        const auto& items = outputFiles()[i].fileItems();
        for (std::size_t k = 0; k < items.size(); ++k) {
            tasks_.push_back({i, k});
            files.push_back({plannedPages(i, items[k])});
        }
    }
    return files;
}

std::int64_t Process::plannedPages(std::size_t output, const FileItem& item) const
{
    const Collision& collision = collisions_[output];
    const bool isRefused = !collision.overwritesInput.isEmpty() || !collision.stampedAs.isEmpty();
    return isRefused ? 0 : stampedPages(job_.configuration, item.pages());
}

WorkAhead::Means Process::means()
{
    std::int64_t pagesBefore = 0;
    for (std::size_t i = 0; i < part_.first; ++i)
        for (const FileItem& item : outputFiles()[i].fileItems())
            pagesBefore += plannedPages(i, item);
    const JobConfiguration& job = job_.configuration;
    return {[this, codings = std::make_shared<pdf::SharedCodings>()] {
                return services_.makeProcessors(job_.configuration, codings);
            },
            [this](DocumentProcessors& processors, std::size_t file, JobRun& run) {
                return workOn(tasks_[file], processors, run);
            },
            totalPagesProcessed_,
            services_.filesAtOnce > 0 ? services_.filesAtOnce
                                      : static_cast<int>(std::thread::hardware_concurrency()),
            abandon_.get_token(),
            StampRun(job.startNumber).after(pagesBefore, job.numberSteps, job.stamps)};
}

void Process::runOutput(std::size_t index, std::size_t nextTask, WorkAhead& files)
{
    FilePath target = outputFiles()[index].filename();
    const std::int32_t processedBefore = totalFileProcessed_;
    log_.files.push_back({target.name(), target.parent().text(), {}, 0, {}});
    LogFiles& record = log_.files.back();
    write(outputFileInProcess_, target.name());
    for (const FileItem& item : outputFiles()[index].fileItems()) {
        if (!isCombining_) break;
        record.source = item.filePath();
        if (item.pages() > 0) {
            record.pages = item.pages();
            write(fileInProcess_, item.name());
        }
        FileWork work = files.take(nextTask++, [this] { return isCombining_.load(); });
        work.log.write();
        pagesOfEndedTurns_ += work.pagesDone;
        noteForecast(work, item);
        try {
            record.outcome = finish(std::move(work), item, index, target, files);
            record.filename = target.name();
            record.targetPath = target.parent().text();
        } catch (...) {
            failed_ = true;
            record.outcome = FileOutcome::without(FileStatus::Refused, currentReason());
            logLine(
                failureLine("Error in (Process=>start) : %@",
                            QStringLiteral("%1: %2").arg(target.readable(), record.outcome.remark->logged)));
        }
    }
    write(outputFileInProcess_, QString());
    const QString label = labelText();
    services_.mainThread.postAndWait([&] {
        if (totalFileProcessed_ > processedBefore) observer_.updateTimeTakenLabel(label);
        observer_.outputFinished(record);
    });
}

void Process::noteForecast(const FileWork& work, const FileItem& item)
{
    if (!job_.part || partProblem_ || !isCombining_) return;
    const bool isContinuous = job_.configuration.isContinuousNumbering;
    const bool isCountRight = !work.document.copy || work.pagesDone == item.pages();
    const bool areNextRight = work.endsAsPlanned || !isContinuous || part_.count == 1;
    if (isCountRight && areNextRight) return;
    partProblem_ = Reason(
        QT_TRANSLATE_NOOP("quillfern::Failure",
                          "The pages that were counted of %1 are not those that were stamped: numbers and "
                          "totals may be wrong. Count the pages again, and do all parts of the job again."),
        {item.filePath().readable()});
    logLine(partProblem_->logged);
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

FileOutcome withoutPages(const FileItem& item, const pdf::Passwords& passwords, const std::stop_token& stop)
{
    try {
        const std::optional<Reason> reason = reasonForNoPages(item, passwords, stop);
        if (reason) logLine(QStringLiteral("%1: %2").arg(item.filePath().readable(), reason->logged));
        return {FileStatus::NoPages, reason, 0, std::nullopt};
    } catch (const Cancelled& given) {
        return FileOutcome::without(FileStatus::Cancelled, given.reasons());
    }
}

} // namespace

FileWork Process::workOn(const Task& task, DocumentProcessors& processors, JobRun& run) const
{
    const OutputFile& output = outputFiles()[task.output];
    const FileItem& item = output.fileItems()[task.item];
    const Collision& collision = collisions_[task.output];
    FileWork work;
    const JobOptions& options = job_.configuration.options;
    if (item.pages() <= 0) {
        pdf::Passwords passwords;
        if (options.usePasswords) passwords.texts = {item.pdfOpenPassword(), options.password};
        work.document.outcome = withoutPages(item, passwords, run.abandoned());
        return work;
    }
    if (!collision.overwritesInput.isEmpty())
        throw Failure(
            {QT_TRANSLATE_NOOP("quillfern::Failure",
                               "No copy was made: it would overwrite another file of the list, %1."),
             {collision.overwritesInput.readable()}});
    if (!collision.stampedAs.isEmpty()) {
        work.document.outcome = FileOutcome::without(
            FileStatus::Refused,
            {QT_TRANSLATE_NOOP(
                 "quillfern::Failure",
                 "It was not stamped: it was the same file as %1 of the list when the job began."),
             {collision.stampedAs.readable()}});
        return work;
    }
    if (collision.isCopyThere) {
        // The copy has numbers, which the next file does not get again.
        run.stamps() = run.stamps().after(stampedPages(job_.configuration, item.pages()),
                                          job_.configuration.numberSteps, job_.configuration.stamps);
        work.document.outcome = CopyPlacement::skipped();
        return work;
    }
    run.copyRules = placement_.rules();
    run.sourceVersion = collision.version;
    run.totalPages = job_.configuration.isContinuousNumbering ? job_.totalPages : item.pages();
    run.started = log_.startTime;
    const QString password = options.usePasswords ? item.pdfOpenPassword() : QString();
    work.document = isPdf(item)
                        ? processors.processPDF(item.filePath(), output.filename(), password, run)
                        : processors.processTIFF(item.filePath(), output.filename(), run, item.compression());
    work.isProcessed = true;
    return work;
}

FileOutcome Process::finish(FileWork work, const FileItem& item, std::size_t index, FilePath& target,
                            WorkAhead& files)
{
    if (work.problem) std::rethrow_exception(work.problem);
    if (!work.isProcessed) return work.document.outcome;
    FileOutcome outcome = placement_.commit(work.document, index, target, abandon_.get_token(),
                                            [&files] { return files.makeRoom(); });
    ++totalFileProcessed_;
    if (outcome.countsAsCreated()) ++totalFileCreated_;
    addRemarks(outcome, item, target, job_.configuration.isContinuousNumbering);
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
    if (created != totalFileSelected()) return tr("Total %1 files processed successfully.").arg(created);
    return tr("All files processed successfully.");
}

void Process::finish()
{
    log_.endTime = services_.clock.now();
    log_.save();
    try {
        writeIndex(job_, log_.files);
    } catch (...) {
        indexProblem_ = currentReason();
        logLine(indexProblem_->logged);
    }
    write(message_, resultMessage());
    write(timeTaken_, timeTakenString(log_.startTime, log_.endTime));
    write(fileInProcess_, QString());
    write(outputFileInProcess_, QString());
    isCombining_ = false;
    const QString label = labelText();
    services_.mainThread.postAndWait([&] { observer_.updateTimeTakenLabel(label); });
    if (job_.isOpenFolderAfterConversion && totalFileCreated_ > 0) services_.desktop.open(job_.outputFolder);
    isCompleted_ = true;
}

} // namespace quillfern
