#include "platform/drawing/FontCatalog.h"
#include "platform/system/NativePath.h"
#include "runner/Runner.h"

#include <QGuiApplication>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <unistd.h>

namespace {

volatile std::sig_atomic_t stopRequested = 0;

extern "C" void requestStop(int signal)
{
    stopRequested = 1;
    std::signal(signal, SIG_DFL); // a second one ends the program at once; no half file is left either way
}

/// Qt wants a folder for sockets and complains of a session without one, as on a server; nothing here needs
/// it.
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
    // Fonts and images come with Qt's GUI library, but no screen is ever asked for.
    qInstallMessageHandler(printMessage);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    drawing::FontCatalog::preferEmbeddableFonts();
    QGuiApplication application(argc, argv);
    std::setlocale(LC_NUMERIC, "C"); // the application took the user's; libraries print numbers with it
    std::signal(SIGINT, requestStop);
    std::signal(SIGTERM, requestStop);

    QTextStream out(stdout);
    QTextStream err(stderr);
    const SystemClock clock;
    const UserFolders folders;
    EventLoopMainThread mainThread;
    desktop::NoDesktop desktop;
    Runner runner({clock, folders, mainThread, desktop}, out, err, ::isatty(STDERR_FILENO) != 0);
    QStringList arguments; // the application's own would lose names that are not UTF-8
    for (int i = 0; i < argc; ++i)
        arguments.append(pathText(QByteArray(argv[i])));
    return runner.run(arguments, [] { return stopRequested != 0; });
}
