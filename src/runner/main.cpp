#include "platform/drawing/FontCatalog.h"
#include "platform/system/FreeMemory.h"
#include "platform/system/NativePath.h"
#include "platform/system/Terminal.h"
#include "runner/Runner.h"

#include <QGuiApplication>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <unistd.h>

namespace {

volatile std::sig_atomic_t stopRequests = 0;

extern "C" void requestStop(int signal)
{
    stopRequests = stopRequests + 1;
    // The first signal lets the file in work be finished, the second gives the file up; a third ends the
    // program at once. Even then no half-written file is left.
    if (stopRequests > 2) ::_exit(128 + signal);
}

/// A signal that the caller has chosen to ignore, as nohup does, stays ignored.
void stopAt(int signal)
{
    if (std::signal(signal, requestStop) == SIG_IGN) std::signal(signal, SIG_IGN);
}

/// Prints Qt's messages, except for the warning that a session has no runtime folder, as on a server; the
/// runner does not need that folder.
void printMessage(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    if (text.startsWith(QLatin1String("QStandardPaths:"))) return;
    const QString line = qFormatLogMessage(type, context, text);
    std::fprintf(stderr, "%s\n", line.toLocal8Bit().constData());
}

} // namespace

int main(int argc, char** argv)
{
    using namespace quillfern;
    keepStandardStreams();
    QStringList arguments; // QCoreApplication::arguments() would lose names that are not UTF-8
    for (int i = 0; i < argc; ++i)
        arguments.append(pathText(QByteArray(argv[i])));
    QTextStream out(stdout);
    if (const auto answer = answerWithoutJob(arguments)) {
        out << *answer;
        return 0;
    }
    saveAddressSpace();
    // Fonts and images are part of Qt's GUI library, which would otherwise look for a screen.
    qInstallMessageHandler(printMessage);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    drawing::FontCatalog::preferEmbeddableFonts();
    QGuiApplication application(argc, argv);
    // QGuiApplication has set the user's locale, with which libraries would print numbers.
    std::setlocale(LC_NUMERIC, "C");
    for (const int signal : {SIGINT, SIGTERM, SIGHUP})
        stopAt(signal);
    // A limit of the file size fails the write and not the whole job.
    std::signal(SIGXFSZ, SIG_IGN);
    // Nor does a reader of the messages that has gone: the job writes its log.
    std::signal(SIGPIPE, SIG_IGN);

    QTextStream err(stderr);
    const SystemClock clock;
    const UserFolders folders;
    EventLoopMainThread mainThread;
    desktop::NoDesktop desktop;
    Runner runner({clock, folders, mainThread, desktop}, out, err, ::isatty(STDERR_FILENO) != 0);
    return runner.run(arguments, [] { return int{stopRequests}; });
}
