#include "runner/Runner.h"

#include "batch/Job.h"
#include "batch/JobWarnings.h"
#include "config/Profile.h"
#include "filelist/AllowedFileTypes.h"
#include "filelist/FileListExport.h"
#include "platform/drawing/FontCatalog.h"
#include "platform/system/Failure.h"
#include "platform/system/FileFacts.h"
#include "platform/system/FileIdentity.h"
#include "platform/system/NativePath.h"
#include "platform/system/TimeTaken.h"
#include "runner/InputGathering.h"
#include "runner/SideOutputs.h"
#include "runner/Worker.h"
#include "stamps/TextStamp.h"

namespace quillfern {

Runner::Runner(ProcessServices services, QTextStream& out, QTextStream& err, bool showProgress)
    : services_(std::move(services)), out_(out), err_(err), showProgress_(showProgress)
{
}

Runner::~Runner() = default;

void Runner::gather(const RunnerOptions& options, FileList& files, const StopRequests& stopRequests)
{
    InputGathering gathering(files, services_.mainThread, services_.clock);
    QStringList remarks;
    const std::vector<Arguments> requests = requestsFor(options, remarks);
    for (const QString& remark : remarks)
        err_ << printable(remark) << '\n';
    err_.flush();
    gathering.gather(requests, [&] {
        if (showProgress_ && !quiet_) {
            err_ << "\r\x1b[K" << QStringLiteral("%1 files found").arg(files.count());
            err_.flush();
            progressShown_ = true;
        }
        return stopRequests() == 0;
    });
    clearProgressLine();
    if (stopRequests() > 0 && (files.empty() || options.onlyExport))
        throw Failure(QStringLiteral("The search for files was stopped. Nothing was written."));
    if (files.empty()) throw WrongUse(QStringLiteral("the folders named hold no files to stamp"));
}

void Runner::writeExport(const FilePath& path, const FileList& files)
{
    if (!exportList(files, path))
        throw WrongUse(
            QStringLiteral("the list cannot be written to \"%1\" (--export)").arg(path.readable()));
    if (quiet_) return;
    out_ << totalLabelText(files.totals()) << "\nList: " << path.readable() << '\n';
    out_.flush();
}

void Runner::nameSubstitutes(const Numbering& number)
{
    const drawing::FontCatalog catalog;
    for (const auto& stamp : number.stamps) {
        const auto* text = dynamic_cast<const TextStamp*>(stamp.get());
        // The default font is an alias on most machines, and the user did not name it: no message about it.
        if (!text || text->font.fontName == PDFFont().fontName) continue;
        const QString wanted = text->font.fontName.value_or(QString());
        const QString used = catalog.resolveFamily(wanted);
        if (used.compare(wanted, Qt::CaseInsensitive) != 0)
            err_ << "The font \"" << printable(wanted) << "\" is not installed; \"" << printable(used)
                 << "\" is used instead.\n";
    }
    err_.flush();
}

namespace {

/// A forgotten value makes the next word, a document, the file that an option writes. Throws WrongUse.
void requireSpared(const RunnerOptions& options)
{
    const auto check = [](const char* option, const FilePath& path, bool isPicture) {
        const QString type = path.extension().toLower();
        if (path.isEmpty() || !isNameTaken(path) || !allowedFileTypes().contains(type)) return;
        if (isPicture && type == QLatin1String("png")) return; // an earlier preview
        throw WrongUse(QStringLiteral("--%1 would overwrite \"%2\", which is a document or a picture")
                           .arg(QLatin1String(option), path.readable()));
    };
    check("export", options.exportFile, false);
    check("save-profile", options.saveProfile, false);
    check("preview", options.preview, true);
    for (const QString& input : options.inputs)
        if (!options.preview.isEmpty() && isSameFile(options.preview, FilePath::fromText(input)))
            throw WrongUse(QStringLiteral("--preview would overwrite the file \"%1\", which is to be stamped")
                               .arg(options.preview.readable()));
}

} // namespace

int Runner::run(const QStringList& arguments, const StopRequests& stopRequests)
{
    try {
        Settings settings;
        settings.isOpenFolderAfterConversion = false;
        const RunnerOptions options = parseRunnerOptions(arguments, settings);
        quiet_ = options.quiet;
        if (options.showHelp || options.showVersion) {
            out_ << (options.showHelp ? runnerHelp()
                                      : QStringLiteral("quillfern-run " QUILLFERN_VERSION "\n"));
            out_.flush();
            return AllCreated;
        }
        requireSpared(options);
        requireResources();
        FileList files;
        if (options.onlyExport) {
            gather(options, files, stopRequests);
            writeExport(options.exportFile, files);
            return AllCreated;
        }
        if (!options.saveProfile.isEmpty()) saveProfile(*settings.number, options.saveProfile);
        if (!options.preview.isEmpty()) {
            if (options.namesFiles()) gather(options, files, stopRequests);
            if (!preview(settings, options, files)) ++outputsMissing_;
        }
        if (!options.asksForJob()) return outputsMissing_ == 0 ? AllCreated : SomeNotCreated;
        settings.outputFolderPath = FilePath::fromText(*settings.outputFolderPath).text();
        try {
            requireOutputFolder(settings.outputFolderPath);
        } catch (const Failure& failure) {
            QString text = failure.reason();
            throw WrongUse(text.replace(QStringLiteral("\r\n"), QStringLiteral(" ")) +
                           QStringLiteral(" (--output)"));
        }
        nameSubstitutes(*settings.number);
        for (const QString& remark : options.remarks)
            err_ << printable(remark) << '\n';
        err_.flush();
        gather(options, files, stopRequests);
        if (!options.exportFile.isEmpty() && stopRequests() == 0) writeExport(options.exportFile, files);

        services_.folders.createApplicationUsersFolder(QStringLiteral("Logs"));
        Job job = planJob(files.copies(), settings);
        job.configuration.isWrittenAnew = options.rewrite;
        job.configuration.refusesSigned = options.refuseSigned;
        Process process(services_, std::move(job), *this);
        runJob(process, stopRequests);
        return report(process);
    } catch (const WrongUse& wrongUse) {
        err_ << "quillfern-run: " << printable(wrongUse.reason()) << "\nTry quillfern-run --help.\n";
        err_.flush();
        return CommandNotFollowed;
    } catch (const Failure& failure) {
        err_ << "quillfern-run: " << printable(failure.reason()) << '\n';
        err_.flush();
        return SomeNotCreated;
    } catch (const std::exception&) {
        err_ << "quillfern-run: " << printable(reasonOfCurrentException()) << '\n';
        err_.flush();
        return SomeNotCreated;
    }
}

bool Runner::preview(Settings& settings, const RunnerOptions& options, const FileList& files)
{
    if (drawPreview(settings.number->configuration(), files, options.previewSize, options.preview))
        return true;
    err_ << files.at(0).filePath().readable() << " cannot be shown; the preview is of a blank page\n";
    err_.flush();
    return false;
}

void Runner::runJob(Process& process, const StopRequests& stopRequests)
{
    int seen = 0;
    started_ = services_.clock.now();
    const auto watch = [&] {
        const int requests = stopRequests();
        if (requests > 0 && seen == 0) {
            process.stop();
            say("Stopping after the current file ...");
        }
        if (requests > 1 && seen < 2) {
            process.abandon();
            say("Giving up the current file ...");
        }
        seen = requests;
        if (showProgress_ && !quiet_) showProgressLine(process);
    };
    watch(); // the user may have stopped the gathering already
    runOnWorker([&] { process.start(); }, watch);
    clearProgressLine();
}

void Runner::say(const char* line)
{
    clearProgressLine();
    err_ << line << '\n';
    err_.flush();
}

void Runner::showProgressLine(const Process& process)
{
    const QString file = printable(readableName(process.fileInProcess()));
    err_ << "\r\x1b[K"
         << QStringLiteral("%1 of %2 files, %3 of %4 pages, %5%6")
                .arg(process.totalFileProcessed())
                .arg(process.totalFileSelected())
                .arg(process.totalPagesProcessed())
                .arg(process.job().totalPages)
                .arg(timeTakenString(started_, services_.clock.now()), file);
    err_.flush();
    progressShown_ = true;
}

void Runner::clearProgressLine()
{
    if (!progressShown_) return;
    err_ << "\r\x1b[K";
    err_.flush();
    progressShown_ = false;
}

void Runner::updateTimeTakenLabel(const QString&)
{
}

void Runner::outputFinished(const LogFiles& output)
{
    const FilePath path = FilePath::fromText(output.targetPath).child(output.filename);
    const FileOutcome& outcome = output.outcome;
    const bool isSound = outcome.status == FileStatus::Created && !outcome.isWarning();
    if (outcome.status != FileStatus::Created || outcome.isFault()) ++outputsMissing_;
    if (quiet_ && isSound) return;
    clearProgressLine();
    QTextStream& stream = quiet_ ? err_ : out_;
    const QString word = outcome.status == FileStatus::CreatedNothing ? QStringLiteral("No Output")
                         : outcome.status == FileStatus::Cancelled    ? QStringLiteral("Cancelled")
                                                                      : statusWord(outcome);
    stream << printable(word).leftJustified(10) << ' ' << QString::number(output.pages).rightJustified(6)
           << (output.pages == 1 ? " page   " : " pages  ") << path.readable();
    if (outcome.remark && outcome.status != FileStatus::Refused) {
        stream << "  (";
        if (outcome.status != FileStatus::Created) stream << output.source.readable() << ": ";
        stream << printable(outcome.remark->shown) << ')';
    }
    stream << '\n';
    stream.flush();
}

int Runner::report(const Process& process)
{
    const FilePath log = process.log().logFilePath().value_or(FilePath());
    const bool isLogged = process.log().isWritten();
    if (!quiet_) {
        QString message = process.message();
        out_ << message.replace(QStringLiteral("\r\n"), QStringLiteral(" ")) << '\n';
        const QString time = process.timeTaken().trimmed();
        if (!time.isEmpty()) out_ << "Time: " << time << '\n';
        if (isLogged) out_ << "Log: " << log.readable() << '\n';
        out_.flush();
    }
    if (!isLogged) err_ << "The log could not be written: " << log.readable() << '\n';
    for (const Reason& warning : jobWarnings(process.log().files))
        err_ << "Warning: " << warning.shown << '\n';
    err_.flush();
    const bool all =
        isLogged && outputsMissing_ == 0 && process.log().files.size() == process.outputFiles().size();
    return all ? AllCreated : SomeNotCreated;
}

} // namespace quillfern
