#pragma once

#include "app/MainWindow.h"
#include "app/QuillfernAppDelegate.h"
#include "app/WindowControls.h"
#include "stamps/TextStamp.h"
#include "support/Fakes.h"
#include "support/PdfBuilder.h"
#include "support/Tools.h"

#include <QTest>

namespace quillfern {

/// The whole application in a folder of its own, driven through its real window. Only the user, the desktop
/// and the clock are simulated.
class AppTest : public testing::Test
{
  protected:
    AppTest();
    ~AppTest() override;

    /// Starts the application with the settings that an earlier start in this test has saved.
    void start();
    /// Quits the application as the user does.
    void quit();

    [[nodiscard]] QuillfernAppDelegate& app() { return *app_; }
    [[nodiscard]] MainWindow& window() { return app_->window(); }
    [[nodiscard]] WindowActions& actions() { return window().actions(); }
    [[nodiscard]] WindowControls ui() { return {window()}; }
    [[nodiscard]] Numbering& number() { return *app_->settings().number; }
    [[nodiscard]] FileList& files() { return app_->files(); }

    /// Waits, with the event loop running, until the condition is true; fails the test after a time limit.
    static void waitFor(const std::function<bool()>& condition, const char* what);

    /// Drops files and folders on the table of files. Returns whether the window accepts the drag.
    bool drop(const QStringList& paths);
    /// Drops files and folders on the table, and waits until they are in the list.
    void fill(const QStringList& paths);

    /// A PDF file of so many pages.
    QString pdf(const char* name, int pages) const;
    QString outFolder() const { return scratch.path(u"out"_s); }
    QStringList names();
    std::vector<int> selectedFiles();
    void select(const std::vector<int>& rows);
    /// Replaces the text of a field by typing.
    static void type(QLineEdit& field, const char* text);
    /// The dialog that is open over the window; null when there is none.
    QDialog* openDialog();
    /// The progress sheet; null when none is visible.
    QDialog* sheet();
    /// Adds a text stamp to the configuration.
    std::shared_ptr<TextStamp> addStamp(const char* format);
    /// Presses Convert, with an output folder.
    void convert();
    /// Waits until the job has ended and its sheet can be closed.
    void waitForEnd();
    /// Presses the button of this name in a window.
    static void press(const QWidget& in, const char* button);

    Scratch scratch;
    FakeClock clock;
    FakeFolders folders;
    MemoryDefaults defaults;
    store::DefaultsStore* store = &defaults; ///< the store that the application uses
    EventLoopMainThread mainThread;
    FakeDesktop desktop;
    FakePanels panels;
    FakeAlerts alerts;
    DocumentProcessorsFactory makeProcessors = makeDocumentProcessors;
    int filesAtOnce = 0;

  private:
    std::unique_ptr<QuillfernAppDelegate> app_;
};

/// The application, started with new settings.
class StartedApp : public AppTest
{
  protected:
    void SetUp() override { start(); }
};

} // namespace quillfern
