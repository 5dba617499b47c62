#include "app/Application.h"

#include "app/CommandLine.h"
#include "app/MainWindow.h"
#include "app/QuillfernAppDelegate.h"
#include "dialogs/WidgetAlerts.h"
#include "dialogs/WidgetPanels.h"
#include "platform/desktop/FreedesktopServices.h"
#include "platform/desktop/SingleInstance.h"
#include "platform/desktop/TerminationSignals.h"
#include "platform/drawing/FontCatalog.h"
#include "platform/pageimages/RenderProcess.h"
#include "platform/store/PlistDefaultsStore.h"
#include "platform/system/FileFacts.h"
#include "platform/system/FreeMemory.h"
#include "platform/system/NativePath.h"

#include <QApplication>
#include <QLibraryInfo>
#include <QStandardPaths>
#include <QTranslator>
#include <clocale>
#include <cstdio>
#include <cstdlib>

namespace quillfern {

namespace {

constexpr int patienceMs = 3000; ///< for the file a job is in when the user leaves
constexpr int commandNotFollowed = 2;

void print(std::FILE* stream, const QString& text)
{
    std::fputs(readableName(text).toLocal8Bit().constData(), stream);
    std::fflush(stream);
}

/// The path of one of the program's own files or folders, which are beside the program where it is installed
/// or was built. Empty when it does not exist.
FilePath installed(const QString& ofOurs)
{
    const QString name = QStringLiteral("quillfern/") + ofOurs;
    const FilePath programs = FilePath::fromText(QCoreApplication::applicationDirPath());
    const FilePath beside = programs.child(QStringLiteral("../share/") + name);
    if (fileKind(beside) != FileKind::Missing) return beside;
    return FilePath::fromText(
        QStandardPaths::locate(QStandardPaths::GenericDataLocation, name,
                               QStandardPaths::LocateFile | QStandardPaths::LocateDirectory));
}

/// Loads the window texts in the first of the user's languages that has a translation. Without one the texts
/// are English.
bool loadTexts(QTranslator& texts)
{
    const QString folder = installed(QStringLiteral("translations")).text();
    for (QString language : QLocale().uiLanguages()) {
        if (QLocale(language).language() == QLocale::English) return false;
        if (texts.load(QStringLiteral("quillfern_") + language.replace(u'-', u'_'), folder)) return true;
    }
    return false;
}

/// What has to happen before there is an application object.
struct BeforeQt
{
    BeforeQt() : activationToken(qEnvironmentVariable("XDG_ACTIVATION_TOKEN"))
    {
        saveAddressSpace();
        drawing::FontCatalog::preferEmbeddableFonts();
    }

    QString activationToken; ///< the desktop's permission to take the keyboard; valid once, and Qt may use it
};

/// Lets the next window that is activated take the keyboard. Elsewhere the window manager decides by itself.
void useActivationToken(const QString& token)
{
    if (!token.isEmpty() && QGuiApplication::platformName().startsWith(QLatin1String("wayland")))
        qputenv("XDG_ACTIVATION_TOKEN", token.toUtf8());
}

/// What an instance with a window consists of. It reads the settings when it is made: not before an earlier
/// instance has left, and has saved them.
struct Program
{
    SystemClock clock;
    UserFolders folders;
    store::PlistDefaultsStore defaults{folders};
    EventLoopMainThread mainThread;
    desktop::FreedesktopServices desktop;
    WidgetPanels panels;
    WidgetAlerts alerts;
    QuillfernAppDelegate delegate{{clock, folders, defaults, mainThread, desktop, panels, alerts,
                                   pageimages::RenderProcess::installedProgram(),
                                   installed(QStringLiteral("MACQuillfern1.pdf"))}};
};

} // namespace

struct Application::Parts
{
    Parts(int& argc, char** argv) : qt(argc, argv)
    {
        std::setlocale(LC_NUMERIC,
                       "C"); // Qt has set the user's locale, in which libraries would print numbers
        QApplication::setApplicationName(QStringLiteral("quillfern"));
        QApplication::setApplicationVersion(QStringLiteral(QUILLFERN_VERSION));
        QGuiApplication::setDesktopFileName(QStringLiteral("quillfern"));
        // Qt's own texts, such as those of its panels.
        if (translator.load(QLocale(), QStringLiteral("qtbase"), QStringLiteral("_"),
                            QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
            QCoreApplication::installTranslator(&translator);
        if (loadTexts(texts)) QCoreApplication::installTranslator(&texts);
    }

    /// Whether another instance has taken the files. Called once, before the window is made.
    bool handOver(const QList<FilePath>& files)
    {
        instance = std::make_unique<desktop::SingleInstance>(QDBusConnection::sessionBus(),
                                                             QStringLiteral("org.orvane.quillfern"));
        if (instance->isFirst()) return false;
        return instance->handOver(files, beforeQt.activationToken);
    }

    void showWindow(const QList<FilePath>& files)
    {
        program = std::make_unique<Program>();
        QuillfernAppDelegate& delegate = program->delegate;
        QObject::connect(instance.get(), &desktop::SingleInstance::opened, &delegate,
                         [&delegate](const QList<FilePath>& paths, const QString& token) {
                             useActivationToken(token);
                             delegate.startedAgain(paths);
                         });
        QObject::connect(&delegate, &QuillfernAppDelegate::quitRequested, &qt, [this, &delegate] {
            if (delegate.saveToQuit()) leave();
        });
        // The system or the session ends the program: there is no person to ask, and perhaps no time to do
        // more than save the settings.
        QObject::connect(&terminationSignals, &desktop::TerminationSignals::received, &qt, [this, &delegate] {
            delegate.applicationShouldTerminate();
            leave();
        });
        QObject::connect(&qt, &QGuiApplication::commitDataRequest, &delegate,
                         &QuillfernAppDelegate::applicationShouldTerminate, Qt::DirectConnection);
        if (!files.isEmpty()) delegate.openFiles(files);
    }

    /// Ends the event loop. The settings are saved by then, so the next instance may read them.
    void leave()
    {
        instance->leave();
        program->delegate.window().hide();
        QCoreApplication::quit();
    }

    BeforeQt beforeQt;
    QApplication qt;
    desktop::TerminationSignals terminationSignals; ///< made early: a signal waits until there is a window
    QTranslator translator;
    QTranslator texts;
    std::unique_ptr<desktop::SingleInstance> instance;
    std::unique_ptr<Program> program;
};

Application::Application(int& argc, char** argv)
{
    CommandLine line = readCommandLine(argc, argv); // no screen is needed to answer a question
    if (line.showHelp || line.showVersion) {
        print(stdout,
              line.showHelp ? commandLineHelp() : QStringLiteral("quillfern " QUILLFERN_VERSION "\n"));
        return;
    }
    parts_ = std::make_unique<Parts>(argc, argv);
    Parts& p = *parts_;
    line = readCommandLine(argc, argv); // Qt has taken its own options out
    if (!line.problem.isEmpty()) {
        print(stderr, QStringLiteral("quillfern: %1\nTry quillfern --help.\n").arg(line.problem));
        status_ = commandNotFollowed;
        return;
    }
    if (!p.handOver(line.files)) p.showWindow(line.files);
}

Application::~Application() = default;

MainWindow* Application::window()
{
    return parts_ && parts_->program ? &parts_->program->delegate.window() : nullptr;
}

int Application::exec()
{
    if (!window()) return status_;
    const int status = QCoreApplication::exec();
    if (!parts_->program->delegate.stop(patienceMs)) std::_Exit(status);
    return status;
}

} // namespace quillfern
