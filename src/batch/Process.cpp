#include "batch/Process.h"

#include "platform/pdf/PdfDocument.h"
#include "platform/system/FileIdentity.h"
#include "platform/system/Guarded.h"

#include <QHash>
#include <unordered_map>

namespace quillfern {

Process::Process(ProcessServices services, Settings& settings, ProcessObserver& observer)
    : services_(std::move(services)), settings_(settings), observer_(observer),
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
        timeTakenLabel(timeTaken(), totalFileProcessed_, static_cast<int>(outputFiles.size()));
    services_.mainThread.postAndWait([&] { observer_.updateTimeTakenLabel(text); });
}

void Process::findCollisions()
{
    collisions_.assign(outputFiles.size(), {});
    std::unordered_map<FileIdentity, FilePath> inputs;
    for (const OutputFile& output : outputFiles) {
        if (!isCombining_) return; // a cancel need not wait until thousands of files were looked at
        for (const FileItem& item : output.fileItems()) {
            const FilePath& path = item.filePath();
            if (const auto identity = fileIdentity(path)) inputs.emplace(*identity, path);
        }
    }
    QHash<FilePath, FilePath> writers;
    for (std::size_t i = 0; i < outputFiles.size() && isCombining_; ++i) {
        const OutputFile& output = outputFiles[i];
        if (output.fileItems().empty()) continue;
        const FilePath own = output.fileItems().back().filePath();
        const auto present = fileIdentity(output.filename());
        const auto input = present ? inputs.find(*present) : inputs.end();
        if (input != inputs.end() && !isSameFile(output.filename(), own))
            collisions_[i].overwritesInput = input->second;
        if (!collisions_[i].overwritesInput.isEmpty()) continue; // will not be written
        collisions_[i].replacesCopyOf = writers.value(output.filename());
        writers.insert(output.filename(), own);
    }
}

namespace {

bool isPdf(const FileItem& item)
{
    return item.type().toUpper() == QLatin1String("PDF");
}

} // namespace

void Process::start(std::int64_t totalPages)
{
    isCompleted_ = false;
    failed_ = false;
    log_.startTime = services_.clock.now();
    write(message_, QString());
    try {
        findCollisions();
        const auto processors =
            services_.makeProcessors(*settings_.number, [this] { ++totalPagesProcessed_; });
        runOutputs(*processors, totalPages);
    } catch (...) {
        logLine(failureLine("Error in (Process=>start) : %@", reasonOfCurrentException()));
        failed_ = true;
    }
    finish();
}

void Process::runOutputs(DocumentProcessors& processors, std::int64_t listPages)
{
    std::int64_t totalPages = settings_.number->isContinuousNumbering() ? listPages : 0;
    for (std::size_t i = 0; i < outputFiles.size() && isCombining_; ++i)
        runOutput(i, processors, totalPages);
}

void Process::runOutput(std::size_t index, DocumentProcessors& processors, std::int64_t& totalPages)
{
    const FilePath& target = outputFiles[index].filename();
    log_.files.push_back({target.name(), target.parent().text(), {}, 0, {}});
    LogFiles& record = log_.files.back();
    write(outputFileInProcess_, target.name());
    note_.clear();
    try {
        for (const FileItem& item : outputFiles[index].fileItems()) {
            if (!isCombining_) break;
            runItem(item, index, processors, record, totalPages);
        }
    } catch (...) {
        failed_ = true;
        const Reason reason = currentReason();
        record.status = reason.logged;
        note_ = reason.shown;
        logLine(failureLine("Error in (Process=>start) : %@", record.status));
    }
    write(outputFileInProcess_, QString());
    const LogFiles copy = record;
    const QString note = note_;
    services_.mainThread.postAndWait([&] { observer_.outputFinished(copy, note); });
}

void Process::runItem(const FileItem& item, std::size_t index, DocumentProcessors& processors,
                      LogFiles& record, std::int64_t& totalPages)
{
    if (item.pages() <= 0) {
        record.status = QStringLiteral("No Pages");
        note_ = isPdf(item)
                    ? pdfProblem(item.filePath())
                    : Reason(QT_TRANSLATE_NOOP("quillfern::Failure",
                                               "the file is not there or holds no picture that can be read"))
                          .shown;
        return;
    }
    const Collision& collision = collisions_[index];
    if (!collision.overwritesInput.isEmpty())
        throw Failure({QT_TRANSLATE_NOOP("quillfern::Failure",
                                         "not written: it would overwrite another file of the list, %1"),
                       {collision.overwritesInput.readable()}});
    Numbering& number = *settings_.number;
    const FilePath& source = item.filePath();
    const FilePath& target = outputFiles[index].filename();
    record.pages = item.pages();
    write(fileInProcess_, item.name());
    if (!number.isContinuousNumbering()) totalPages = item.pages();

    const bool created = isPdf(item) ? processors.processPDF(source, target, QString(), totalPages)
                                     : processors.processTIFF(source, target, totalPages, item.compression());
    if (!number.isContinuousNumbering()) number.reset();
    ++totalFileProcessed_;
    postLabel();
    if (created) ++totalFileCreated_;
    record.status = created ? QStringLiteral("Completed") : QStringLiteral("Failed");
    note_ = processors.lastProblem();
    if (note_.isEmpty() && created && !collision.replacesCopyOf.isEmpty()) {
        const Reason note(QT_TRANSLATE_NOOP("quillfern::Failure", "replaces the copy of %1"),
                          {collision.replacesCopyOf.readable()});
        logNotice(QStringLiteral("%1 %2").arg(target.readable(), note.logged));
        note_ = note.shown;
    }
}

QString Process::resultMessage() const
{
    if (failed_)
        return tr("%1 unable able to process some of the files!\r\nPlease check log for more information.")
            .arg(getAppTitle());
    if (!isCombining_) return tr("Process cancelled!");
    const std::int32_t created = totalFileCreated_;
    if (static_cast<std::size_t>(created) != outputFiles.size())
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
    if (settings_.isOpenFolderAfterConversion && totalFileCreated_ > 0)
        services_.desktop.open(FilePath::fromText(settings_.outputFolderPath.value_or(QString())));
    isCompleted_ = true;
}

} // namespace quillfern
