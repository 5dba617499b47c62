#include "app/MainWindow.h"
#include "app/QuillfernAppDelegate.h"
#include "dialogs/WidgetAlerts.h"
#include "dialogs/WidgetPanels.h"
#include "platform/desktop/FreedesktopServices.h"
#include "platform/drawing/FontCatalog.h"
#include "platform/preview/RenderProcess.h"
#include "platform/store/PlistDefaultsStore.h"
#include "platform/system/NativePath.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QLibraryInfo>
#include <QStandardPaths>
#include <QTranslator>
#include <clocale>
#include <cstdlib>

namespace {

constexpr int patienceMs = 3000; ///< for the file a job is in when the user leaves

/// Beside the program, where it is installed or was built.
QString helpDocument()
{
    const QString name = QStringLiteral("quillfern/MACQuillfern1.pdf");
    const QString beside =
        QDir(QCoreApplication::applicationDirPath()).filePath(QStringLiteral("../share/") + name);
    if (QFile::exists(beside)) return QDir::cleanPath(beside);
    return QStandardPaths::locate(QStandardPaths::GenericDataLocation, name);
}

} // namespace

int main(int argc, char** argv)
{
    using namespace quillfern;
    FontCatalog::preferEmbeddableFonts();
    QApplication application(argc, argv);
    std::setlocale(LC_NUMERIC, "C"); // the application took the user's; libraries print numbers with it
    QApplication::setApplicationName(QStringLiteral("quillfern"));
    QApplication::setApplicationDisplayName(getAppTitle());
    QApplication::setApplicationVersion(QStringLiteral(QUILLFERN_VERSION));
    QGuiApplication::setDesktopFileName(QStringLiteral("quillfern"));
    QTranslator translator; // Qt's own texts, such as those of its panels
    if (translator.load(QLocale(), QStringLiteral("qtbase"), QStringLiteral("_"),
                        QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&translator);

    const SystemClock clock;
    const UserFolders folders;
    PlistDefaultsStore defaults(folders);
    EventLoopMainThread mainThread;
    FreedesktopServices desktop;
    WidgetPanels panels;
    WidgetAlerts alerts;
    QuillfernAppDelegate delegate({clock, folders, defaults, mainThread, desktop, panels, alerts,
                                   RenderProcess::installedProgram(), helpDocument()});
    QObject::connect(&delegate, &QuillfernAppDelegate::quitRequested, &application, [&] {
        delegate.applicationShouldTerminate();
        delegate.window().hide();
        QCoreApplication::quit();
    });
    // The session ends: there may be no time for more than this.
    QObject::connect(&application, &QGuiApplication::commitDataRequest, &application,
                     [&] { delegate.applicationShouldTerminate(); });

    QStringList paths; // the application's own arguments would lose names that are not UTF-8
    for (int i = 1; i < argc; ++i)
        if (argv[i][0] != '-') paths.append(pathText(QByteArray(argv[i])));
    if (!paths.isEmpty()) delegate.openFiles(paths);

    const int status = QCoreApplication::exec();
    // The settings are saved. A file that a job is still busy with is not under its final name yet and leaves
    // nothing behind, so nobody has to wait for it.
    if (!delegate.stop(patienceMs)) std::_Exit(status);
    return status;
}
