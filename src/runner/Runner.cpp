#include "runner/Runner.h"

#include "batch/Job.h"
#include "config/Profile.h"
#include "filelist/FileListExport.h"
#include "platform/drawing/FontCatalog.h"
#include "platform/system/Failure.h"
#include "platform/system/FileFacts.h"
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

void Runner::gather(const RunnerOptions& options, FileList& files, const std::function<bool()>& stopRequested)
{
    InputGathering gathering(files, services_.mainThread, services_.clock);
    QStringList remarks;
    const std::vector<Arguments> requests = requestsFor(options, remarks);
    for (const QString& remark : remarks)
        err_ << remark << '\n';
    err_.flush();
    gathering.gather(requests, [&] {
        if (showProgress_ && !quiet_) {
            err_ << "\r\x1b[K" << QStringLiteral("%1 files found").arg(files.count());
            err_.flush();
            progressShown_ = true;
        }
        return !stopRequested();
    });
    clearProgressLine();
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
            err_ << "The font \"" << wanted << "\" is not installed; \"" << used << "\" is used instead.\n";
    }
    err_.flush();
}

int Runner::run(const QStringList& arguments, const std::function<bool()>& stopRequested)
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
        FileList files;
        if (options.onlyExport) {
            gather(options, files, stopRequested);
            writeExport(options.exportFile, files);
            return AllCreated;
        }
        if (!options.saveProfile.isEmpty()) saveProfile(*settings.number, options.saveProfile);
        if (!options.preview.isEmpty()) {
            if (options.namesFiles()) gather(options, files, stopRequested);
            preview(settings, options, files);
        }
        if (!options.asksForJob()) return AllCreated;
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
            err_ << remark << '\n';
        err_.flush();
        gather(options, files, stopRequested);
        if (!options.exportFile.isEmpty()) writeExport(options.exportFile, files);

        services_.folders.createApplicationUsersFolder(QStringLiteral("Logs"));
        Process process(services_, planJob(files.copies(), settings), *this);
        runJob(process, stopRequested);
        return report(process);
    } catch (const WrongUse& wrongUse) {
        err_ << "quillfern-run: " << wrongUse.reason() << "\nTry quillfern-run --help.\n";
        err_.flush();
        return CommandNotFollowed;
    } catch (const Failure& failure) {
        err_ << "quillfern-run: " << failure.reason() << '\n';
        err_.flush();
        return SomeNotCreated;
    }
}

void Runner::preview(Settings& settings, const RunnerOptions& options, const FileList& files)
{
    if (drawPreview(settings.number->configuration(), files, options.previewSize, options.preview)) return;
    err_ << files.at(0).filePath().readable() << " cannot be shown; the preview is of a blank page\n";
    err_.flush();
}

void Runner::runJob(Process& process, const std::function<bool()>& stopRequested)
{
    bool stopping = false;
    started_ = services_.clock.now();
    runOnWorker([&] { process.start(); },
                [&] {
                    if (!stopping && stopRequested()) {
                        stopping = true;
                        process.stop();
                        clearProgressLine();
                        err_ << "Stopping after the current file ...\n";
                        err_.flush();
                    }
                    if (showProgress_ && !quiet_) showProgressLine(process);
                });
    clearProgressLine();
}

void Runner::showProgressLine(const Process& process)
{
    const QString file = readableName(process.fileInProcess());
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
    const bool created = outcome.status == FileStatus::Created;
    if (!created) ++outputsMissing_;
    if (quiet_ && created) return;
    clearProgressLine();
    QTextStream& stream = quiet_ ? err_ : out_;
    stream << statusWord(outcome).leftJustified(10) << ' ' << QString::number(output.pages).rightJustified(6)
           << (output.pages == 1 ? " page   " : " pages  ") << path.readable();
    if (outcome.remark && outcome.status != FileStatus::Refused)
        stream << "  (" << outcome.remark->shown << ')';
    stream << '\n';
    stream.flush();
}

int Runner::report(const Process& process)
{
    if (!quiet_) {
        QString message = process.message();
        out_ << message.replace(QStringLiteral("\r\n"), QStringLiteral(" ")) << '\n';
        const QString time = process.timeTaken().trimmed();
        if (!time.isEmpty()) out_ << "Time: " << time << '\n';
        const FilePath log = process.log().logFilePath().value_or(FilePath());
        if (fileKind(log) != FileKind::Missing)
            out_ << "Log: " << log.readable() << '\n';
        else
            err_ << "The log could not be written: " << log.readable() << '\n';
        err_.flush();
        out_.flush();
    }
    const bool all = outputsMissing_ == 0 && process.log().files.size() == process.outputFiles().size();
    return all ? AllCreated : SomeNotCreated;
}

} // namespace quillfern
