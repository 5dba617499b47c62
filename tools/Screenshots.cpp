// Takes pictures of the program's windows in the states that users see, with the files of samples/, and
// writes them into a folder. Run it through tools/screenshots.sh.

#include "app/MainWindow.h"
#include "app/QuillfernAppDelegate.h"
#include "app/TableRows.h"
#include "app/WindowControls.h"
#include "platform/drawing/FontCatalog.h"
#include "support/Fakes.h"

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QScreen>
#include <QStyleFactory>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <clocale>
#include <cstdio>

namespace quillfern {
namespace {

/// The palette of a desktop with dark windows.
QPalette darkPalette()
{
    QPalette palette(QColor(0x2b, 0x2d, 0x30), QColor(0x2b, 0x2d, 0x30));
    palette.setColor(QPalette::Base, QColor(0x1f, 0x21, 0x23));
    palette.setColor(QPalette::AlternateBase, QColor(0x26, 0x28, 0x2b));
    palette.setColor(QPalette::Highlight, QColor(0x2f, 0x65, 0xa8));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        palette.setColor(QPalette::Disabled, role, QColor(0x7c, 0x80, 0x85));
    palette.setColor(QPalette::PlaceholderText, QColor(0x8c, 0x90, 0x95));
    palette.setColor(QPalette::Link, QColor(0x6f, 0xa8, 0xe8));
    return palette;
}

/// Processors that are slow, so that a running job can be pictured.
class SlowProcessors final : public DocumentProcessors
{
  public:
    StampedDocument processPDF(const FilePath&, const FilePath&, const QString&, JobRun& run) override
    {
        return work(run);
    }
    StampedDocument processTIFF(const FilePath&, const FilePath&, JobRun& run, std::int32_t) override
    {
        return work(run);
    }

  private:
    static StampedDocument work(const JobRun& run)
    {
        run.pageDone();
        QThread::msleep(350);
        StampedDocument document;
        document.outcome = {FileStatus::Created, std::nullopt, 1, std::nullopt};
        return document;
    }
};

class Photographer
{
  public:
    Photographer(QString samples, QString folder, QString suffix)
        : samples_(std::move(samples)), folder_(std::move(folder)), suffix_(std::move(suffix)),
          folders_(scratch_.path()),
          app_(AppServices{clock_, folders_, defaults_, mainThread_, desktop_, panels_, alerts_, program(),
                           FilePath(), [](const auto&...) { return std::make_unique<SlowProcessors>(); }, 1})
    {
        QDir(scratch_.path()).mkpath(QStringLiteral("Stamped"));
    }

    void takeAll()
    {
        window().resize(1240, 800);
        settle();
        take("window-empty");
        fill();
        take("window");
        ui().settingTabView->setCurrentIndex(1);
        take("window-pages");
        ui().settingTabView->setCurrentIndex(2);
        ui().outputFolderPath->setText(QStringLiteral("/home/ada/Stamped"));
        take("window-output");
        ui().settingTabView->setCurrentIndex(0);
        window().resize(1024, 640);
        take("window-small");
        window().resize(1240, 800);
        settle();
        dialogs();
        editors();
        job();
        busy();
    }

  private:
    static QString program()
    {
        return QCoreApplication::applicationDirPath() + QStringLiteral("/quillfern-render");
    }
    MainWindow& window() { return app_.window(); }
    WindowActions& actions() { return window().actions(); }
    WindowControls ui() { return WindowControls(window()); }

    static void waitFor(const std::function<bool()>& condition, int milliseconds)
    {
        if (!QTest::qWaitFor(condition, milliseconds)) std::fprintf(stderr, "waited in vain\n");
    }
    static void settle(int milliseconds = 450) { QTest::qWait(milliseconds); }

    /// Takes a picture of the screen where the window is, with everything that lies over the window.
    void take(const char* name) { take(name, &window()); }
    void take(const char* name, QWidget* of)
    {
        settle();
        const QPixmap screen = QGuiApplication::primaryScreen()->grabWindow(0);
        const double density = screen.devicePixelRatio();
        const QRect frame = of->frameGeometry();
        const QPixmap picture = screen.copy(QRect(frame.topLeft() * density, frame.size() * density));
        const QString path = QStringLiteral("%1/%2%3.png").arg(folder_, QString::fromLatin1(name), suffix_);
        if (!picture.save(path)) std::fprintf(stderr, "cannot write %s\n", qPrintable(path));
    }

    void fill()
    {
        app_.openFiles(asPaths({samples_}));
        waitFor([this] { return app_.files().count() > 8 && !app_.isProcessing(); }, 20'000);
        panels_.answers.append(QStringList{samples_ + QStringLiteral("/logo-and-text.qfprofile")});
        actions().loadStamps->trigger();
        selectRows(*ui().mainTableView, {row("contract.pdf")});
        selectRows(*ui().stampsTableView, {1});
        ui().isHighlightStamp->setChecked(false);
        ui().isLivePreview->setChecked(true);
        settle(900);
    }
    int row(const char* name)
    {
        for (int i = 0; i < app_.files().count(); ++i)
            if (app_.files().at(i).name() == QLatin1String(name)) return i;
        return 0;
    }

    QDialog* dialog()
    {
        for (QDialog* each : window().findChildren<QDialog*>())
            if (each->isVisible()) return each;
        return nullptr;
    }
    void takeDialog(const char* name)
    {
        settle();
        if (QDialog* shown = dialog()) {
            take(name, shown);
            shown->close();
            settle(50);
        } else
            std::fprintf(stderr, "%s did not come up\n", name);
    }

    void dialogs()
    {
        actions().importFiles->trigger();
        for (QRadioButton* button : dialog()->findChildren<QRadioButton*>())
            if (button->objectName() == QLatin1String("importFromTextBtn")) button->click();
        QGuiApplication::clipboard()->setText(
            QStringLiteral("/cases/2026/exhibit-a.pdf\n/cases/2026/exhibit-b.pdf\n/cases/2026/notes.txt\n"
                           "/cases/2026/scan-0001.tif"));
        for (QPushButton* button : dialog()->findChildren<QPushButton*>())
            if (button->objectName() == QLatin1String("pasteFromClipboardBtn")) button->click();
        takeDialog("import");
        actions().pdfPasswordButton->trigger();
        takeDialog("password");
        actions().aboutMenuItem->trigger();
        takeDialog("about");
    }

    void editors()
    {
        const char* names[] = {"editor-picture", "editor-text"};
        for (int i = 0; i < 2; ++i) {
            selectRows(*ui().stampsTableView, {i});
            actions().editStamp->trigger();
            settle();
            for (QWidget* each : QApplication::topLevelWidgets())
                if (each->isVisible() && each != &window() && each->isWindow()) {
                    each->move(60, 20);
                    each->raise();
                    take(names[i], each);
                    each->close();
                }
        }
    }

    void job()
    {
        ui().outputFolderPath->setText(scratch_.filePath(QStringLiteral("Stamped")));
        actions().convert->trigger();
        settle(2200);
        take("progress");
        waitFor([this] { return app_.job().process() && app_.job().process()->isCompleted(); }, 30'000);
        take("progress-done");
        if (QDialog* sheet = dialog()) QTest::keyClick(sheet, Qt::Key_Escape);
        settle();
    }

    void busy()
    {
        QDir many(scratch_.path());
        many.mkpath(QStringLiteral("many"));
        for (int i = 0; i < 20'000; ++i)
            QFile::link(
                samples_ + QStringLiteral("/contract.pdf"),
                scratch_.filePath(QStringLiteral("many/exhibit-%1.pdf").arg(i, 5, 10, QLatin1Char('0'))));
        app_.openFiles(asPaths({scratch_.filePath(QStringLiteral("many"))}));
        take("window-busy");
        ui().cancelBtn->click();
        waitFor([this] { return !ui().cancelBtn->isVisible(); }, 20'000);
    }

    QString samples_;
    QString folder_;
    QString suffix_;
    QTemporaryDir scratch_;
    SystemClock clock_;
    FakeFolders folders_;
    MemoryDefaults defaults_;
    EventLoopMainThread mainThread_;
    FakeDesktop desktop_;
    FakePanels panels_;
    FakeAlerts alerts_;
    QuillfernAppDelegate app_;
};

} // namespace
} // namespace quillfern

int main(int argc, char** argv)
{
    if (argc != 4 && argc != 5) {
        std::fprintf(stderr, "usage: %s SAMPLES FOLDER light|dark|rtl [SUFFIX]\n", argv[0]);
        return 2;
    }
    quillfern::drawing::FontCatalog::preferEmbeddableFonts();
    QApplication application(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    QApplication::setStyle(QStyleFactory::create(QStringLiteral("fusion")));
    const QString look = QString::fromLocal8Bit(argv[3]);
    if (look == QLatin1String("dark")) QApplication::setPalette(quillfern::darkPalette());
    if (look == QLatin1String("rtl")) QApplication::setLayoutDirection(Qt::RightToLeft);
    const QString folder = QString::fromLocal8Bit(argv[2]);
    QDir().mkpath(folder);
    quillfern::Photographer(QDir(QString::fromLocal8Bit(argv[1])).absolutePath(), folder,
                            argc == 5 ? QString::fromLocal8Bit(argv[4]) : QString())
        .takeAll();
    return 0;
}
