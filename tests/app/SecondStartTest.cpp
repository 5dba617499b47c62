#include "app/AppFixture.h"
#include "platform/store/PropertyList.h"
#include "support/PrivateBus.h"

#include <QDBusConnectionInterface>
#include <QProcess>
#include <csignal>

namespace quillfern {
namespace {

class SecondStart : public StartedApp
{
  protected:
    void waitForFiles(const char* expected)
    {
        waitFor([&] { return names() == words(expected) && !app().isProcessing(); }, "the files handed over");
    }
};

TEST_F(SecondStart, AnIdleWindowTakesTheFilesAndIsShown)
{
    window().hide();
    app().startedAgain(asPaths({pdf("a.pdf", 1), pdf("b.pdf", 2)}));
    EXPECT_TRUE(window().isVisible());
    waitForFiles("a.pdf b.pdf");
    app().startedAgain({}); // no files: the window only comes to the front
    EXPECT_FALSE(app().isProcessing());
}

TEST_F(SecondStart, FilesWaitForTheEndOfAGathering)
{
    const QStringList first{pdf("a.pdf", 1)};
    ASSERT_TRUE(drop(first));
    // The second start comes before the first request is shown as begun, while it runs, and after its cancel:
    // no file may be lost.
    app().startedAgain(asPaths({pdf("b.pdf", 1)}));
    app().startedAgain(asPaths({pdf("c.pdf", 1), pdf("d.pdf", 1)}));
    waitFor([this] { return app().isProcessing(); }, "the gathering");
    app().startedAgain(asPaths({pdf("e.pdf", 1)}));
    press(window(), "cancelBtn");
    app().startedAgain(asPaths({pdf("f.pdf", 1)}));
    waitFor([this] { return names().contains(u"f.pdf"_s) && !app().isProcessing(); }, "the last");
    for (const char* name : {"b.pdf", "c.pdf", "d.pdf", "e.pdf"})
        EXPECT_TRUE(names().contains(QLatin1String(name))) << name;
}

TEST_F(SecondStart, FilesWaitUntilTheSheetIsClosed)
{
    fill({pdf("a.pdf", 1)});
    select({0});
    actions().pdfPasswordButton->trigger();
    QDialog* dialog = openDialog();
    ASSERT_NE(dialog, nullptr);
    app().startedAgain(asPaths({pdf("b.pdf", 1)}));
    QTest::qWait(20);
    EXPECT_EQ(files().count(), 1) << "the selection the password is for stays as it is";
    QTest::keyClick(dialog, Qt::Key_Escape);
    waitForFiles("a.pdf b.pdf");

    convert();
    app().startedAgain(asPaths({pdf("c.pdf", 1)}));
    waitFor([this] { return app().job().process()->isCompleted(); }, "the job");
    QTest::qWait(20);
    EXPECT_EQ(files().count(), 2) << "the sheet shows the list as it was";
    waitForEnd();
    press(*sheet(), "closeProcessBtn");
    waitFor([this] { return names().contains(u"c.pdf"_s); }, "the late file");
}

/// The program itself, with a home folder and a session bus of its own.
class Program : public testing::Test
{
  protected:
    void prepare(QProcess& process, const QStringList& arguments) const
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        for (const char* name :
             {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"})
            environment.insert(QString::fromLatin1(name), scratch_.path(QString()));
        environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, bus_.address());
        process.setProcessEnvironment(environment);
        process.setProgram(qEnvironmentVariable("QUILLFERN_BIN_DIR") + u"/quillfern"_s);
        process.setArguments(arguments);
    }

    Scratch scratch_;
    PrivateBus bus_;
};

TEST_F(Program, AnswersItsCommandLine)
{
    const Rows<QStringList, int, const char*, const char*> rows = {
        {{u"--help"_s}, 0, "[FILE|FOLDER...]", "no such screen"},
        {{u"--version"_s}, 0, "quillfern " QUILLFERN_VERSION "\n", "no such screen"},
        {{u"-style"_s, u"fusion"_s, u"-v"_s}, 0, "quillfern ", ""},
        {{u"-platform"_s, u"offscreen"_s, u"--frob"_s},
         2,
         "quillfern: Unknown option 'frob'.\nTry quillfern --help.\n",
         ""},
    };
    for (const auto& [arguments, status, printed, platform] : rows) {
        QProcess process;
        prepare(process, arguments);
        if (*platform) {
            QProcessEnvironment environment = process.processEnvironment();
            environment.insert(u"QT_QPA_PLATFORM"_s, QLatin1String(platform));
            process.setProcessEnvironment(environment);
        }
        process.setProcessChannelMode(QProcess::MergedChannels);
        process.start();
        ASSERT_TRUE(process.waitForFinished());
        const QByteArray text = process.readAll();
        EXPECT_EQ(process.exitCode(), status) << text.constData();
        EXPECT_TRUE(text.contains(printed)) << text.constData();
    }
}

TEST_F(Program, ASecondStartEndsAndTheFirstRunsOn)
{
    const QDBusConnection bus = bus_.connect("watcher");
    ASSERT_TRUE(bus.isConnected());
    QProcess first;
    prepare(first, {});
    first.start();
    ASSERT_TRUE(QTest::qWaitFor(
        [&] { return bus.interface()->isServiceRegistered(u"org.orvane.quillfern"_s).value(); }, 30'000));
    QProcess second;
    prepare(second, {u"--"_s, u"-dash.pdf"_s});
    second.start();
    ASSERT_TRUE(second.waitForFinished());
    EXPECT_EQ(second.exitStatus(), QProcess::NormalExit);
    EXPECT_EQ(second.exitCode(), 0) << second.readAllStandardError().constData();
    EXPECT_EQ(first.state(), QProcess::Running);
    first.kill();
    EXPECT_TRUE(first.waitForFinished());
}

TEST_F(Program, SavesItsSettingsWhenItIsAskedToEnd)
{
    const QDBusConnection bus = bus_.connect("watcher");
    ASSERT_TRUE(bus.isConnected());
    const QString settings = scratch_.path(u"Orvane/Quillfern1.plist"_s);
    for (const int number : {SIGTERM, SIGHUP, SIGINT}) {
        QFile::remove(settings);
        QProcess process;
        prepare(process, {});
        process.start();
        ASSERT_TRUE(QTest::qWaitFor(
            [&] { return bus.interface()->isServiceRegistered(u"org.orvane.quillfern"_s).value(); }, 30'000));
        EXPECT_FALSE(QFile::exists(settings));
        ASSERT_EQ(::kill(static_cast<pid_t>(process.processId()), number), 0);
        ASSERT_TRUE(process.waitForFinished());
        EXPECT_EQ(process.exitStatus(), QProcess::NormalExit) << number;
        EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().constData();
        const store::Record saved = store::readPropertyListFile(asPath(settings));
        EXPECT_NE(saved.record(u"SETTINGS"_s), nullptr);
        EXPECT_NE(saved.record(u"WINDOW"_s), nullptr);
    }
}

} // namespace
} // namespace quillfern
