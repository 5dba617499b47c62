#include "app/Application.h"

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

namespace quillfern {

namespace {

constexpr int patienceMs = 3000; ///< for the file a job is in when the user leaves

/// A file or folder of ours: beside the program, where it is installed or was built. Empty when there is
/// none.
QString installed(const QString& ofOurs)
{
    const QString name = QStringLiteral("quillfern/") + ofOurs;
    const QDir programs(QCoreApplication::applicationDirPath());
    const QString beside = programs.filePath(QStringLiteral("../share/") + name);
    if (QFile::exists(beside)) return QDir::cleanPath(beside);
    return QStandardPaths::locate(QStandardPaths::GenericDataLocation, name,
                                  QStandardPaths::LocateFile | QStandardPaths::LocateDirectory);
}

/// The interface in the first of the user's languages that there is. Its own is English.
bool loadTexts(QTranslator& texts)
{
    const QString folder = installed(QStringLiteral("translations"));
    for (QString language : QLocale().uiLanguages()) {
        if (QLocale(language).language() == QLocale::English) return false;
        if (texts.load(QStringLiteral("quillfern_") + language.replace(u'-', u'_'), folder)) return true;
    }
    return false;
}

/// What has to happen before there is an application object.
struct FontsChosen
{
    FontsChosen() { FontCatalog::preferEmbeddableFonts(); }
};

} // namespace

struct Application::Parts
{
    Parts(int& argc, char** argv) : qt(argc, argv)
    {
        std::setlocale(LC_NUMERIC, "C"); // Qt took the user's; libraries print numbers with it
        QApplication::setApplicationName(QStringLiteral("quillfern"));
        QApplication::setApplicationVersion(QStringLiteral(QUILLFERN_VERSION));
        QGuiApplication::setDesktopFileName(QStringLiteral("quillfern"));
        // Qt's own texts, such as those of its panels.
        if (translator.load(QLocale(), QStringLiteral("qtbase"), QStringLiteral("_"),
                            QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
            QCoreApplication::installTranslator(&translator);
        if (loadTexts(texts)) QCoreApplication::installTranslator(&texts);
    }

    void connectAndOpen(int argc, char** argv)
    {
        QObject::connect(delegate.get(), &QuillfernAppDelegate::quitRequested, &qt, [this] {
            delegate->applicationShouldTerminate();
            delegate->window().hide();
            QCoreApplication::quit();
        });
        // The session ends: there may be no time for more than this.
        QObject::connect(&qt, &QGuiApplication::commitDataRequest, delegate.get(),
                         &QuillfernAppDelegate::applicationShouldTerminate, Qt::DirectConnection);
        QStringList paths; // the application's own arguments would lose names that are not UTF-8
        for (int i = 1; i < argc; ++i)
            if (argv[i][0] != '-') paths.append(pathText(QByteArray(argv[i])));
        if (!paths.isEmpty()) delegate->openFiles(paths);
    }

    FontsChosen fontsChosen;
    QApplication qt;
    QTranslator translator;
    QTranslator texts;
    SystemClock clock;
    UserFolders folders;
    PlistDefaultsStore defaults{folders};
    EventLoopMainThread mainThread;
    FreedesktopServices desktop;
    WidgetPanels panels;
    WidgetAlerts alerts;
    std::unique_ptr<QuillfernAppDelegate> delegate;
};

Application::Application(int& argc, char** argv) : parts_(std::make_unique<Parts>(argc, argv))
{
    Parts& p = *parts_;
    p.delegate = std::make_unique<QuillfernAppDelegate>(
        AppServices{p.clock, p.folders, p.defaults, p.mainThread, p.desktop, p.panels, p.alerts,
                    RenderProcess::installedProgram(), installed(QStringLiteral("MACQuillfern1.pdf"))});
    p.connectAndOpen(argc, argv);
}

Application::~Application() = default;

MainWindow& Application::window()
{
    return parts_->delegate->window();
}

int Application::exec()
{
    const int status = QCoreApplication::exec();
    if (!parts_->delegate->stop(patienceMs)) std::_Exit(status);
    return status;
}

} // namespace quillfern
