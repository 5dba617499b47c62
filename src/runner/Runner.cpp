#include "runner/Runner.h"

#include "batch/JobPlan.h"
#include "batch/TimeTaken.h"
#include "filelist/FolderWalk.h"

#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QThread>
#include <QTimer>

namespace quillfern {

Runner::Runner(ProcessServices services, QTextStream& out, QTextStream& err, bool showProgress)
    : services_(std::move(services)), out_(out), err_(err), showProgress_(showProgress)
{
}

Runner::~Runner() = default;

std::vector<FileItem> Runner::gather(const RunnerOptions& options) const
{
    QStringList paths;
    for (const QString& input : options.inputs) {
        const QFileInfo info(QDir::cleanPath(QFileInfo(input).absoluteFilePath()));
        if (!info.exists()) throw WrongUse(QStringLiteral("there is no file or folder \"%1\"").arg(input));
        if (info.isDir())
            paths += filesInFolder(info.filePath(), options.subfolders);
        else if (allowedFileTypes().contains(info.suffix().toLower()))
            paths.append(info.filePath());
        else
            throw WrongUse(
                QStringLiteral("\"%1\" is not a PDF, TIFF, BMP, JPEG, PNG or GIF file").arg(input));
    }
    paths.removeDuplicates();
    if (paths.isEmpty()) throw WrongUse(QStringLiteral("the folders named hold no files to stamp"));
    std::vector<FileItem> items;
    for (const QString& path : paths) {
        auto item = FileItem::initWithURL(QUrl::fromLocalFile(path));
        if (!item) continue;
        item->setPdfOpenPassword(QString());
        items.push_back(std::move(*item));
    }
    return items;
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
        settings.outputFolderPath = QDir::cleanPath(QFileInfo(*settings.outputFolderPath).absoluteFilePath());
        if (const auto problem = outputFolderProblem(settings.outputFolderPath)) {
            QString text = *problem;
            throw WrongUse(text.replace(QStringLiteral("\r\n"), QStringLiteral(" ")) +
                           QStringLiteral(" (--output)"));
        }
        const std::vector<FileItem> files = gather(options);

        services_.folders.createApplicationUsersFolder(QStringLiteral("Logs"));
        Process process(services_, settings, *this);
        listPages_ = planJob(process, files, settings);
        runJob(process, listPages_, stopRequested);
        return report(process);
    } catch (const WrongUse& wrongUse) {
        err_ << "quillfern-run: " << wrongUse.reason() << "\nTry quillfern-run --help.\n";
        err_.flush();
        return CommandNotFollowed;
    }
}

void Runner::runJob(Process& process, std::int64_t totalPages, const std::function<bool()>& stopRequested)
{
    QEventLoop loop;
    const std::unique_ptr<QThread> worker(QThread::create([&] { process.start(totalPages); }));
    QObject::connect(worker.get(), &QThread::finished, &loop, &QEventLoop::quit);
    QTimer timer;
    bool stopping = false;
    QObject::connect(&timer, &QTimer::timeout, &loop, [&] {
        if (!stopping && stopRequested()) {
            stopping = true;
            process.stop();
            clearProgressLine();
            err_ << "Stopping after the current file ...\n";
            err_.flush();
        }
        if (showProgress_ && !quiet_) showProgressLine(process);
    });
    started_ = services_.clock.now();
    timer.start(100);
    worker->start();
    loop.exec();
    worker->wait();
    clearProgressLine();
}

void Runner::showProgressLine(const Process& process)
{
    const QString file = process.fileInProcess();
    err_ << "\r\x1b[K"
         << QStringLiteral("%1 of %2 files, %3 of %4 pages, %5%6")
                .arg(process.totalFileProcessed())
                .arg(process.totalFileSelected())
                .arg(process.totalPagesProcessed())
                .arg(listPages_)
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

void Runner::outputFinished(const LogFiles& output, const QString& note)
{
    const QString path = QDir(output.targetPath).filePath(output.filename);
    const bool created = output.status == QLatin1String("Completed") && QFileInfo::exists(path);
    if (!created) ++outputsMissing_;
    if (quiet_ && created) return;
    clearProgressLine();
    QTextStream& stream = quiet_ ? err_ : out_;
    stream << output.status.leftJustified(10) << ' ' << QString::number(output.pages).rightJustified(6)
           << (output.pages == 1 ? " page   " : " pages  ") << path;
    if (!note.isEmpty()) stream << "  (" << note << ')';
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
        if (process.log().logFilePath()) out_ << "Log: " << *process.log().logFilePath() << '\n';
        out_.flush();
    }
    const bool all = outputsMissing_ == 0 && process.log().files.size() == process.outputFiles.size();
    return all ? AllCreated : SomeNotCreated;
}

} // namespace quillfern
