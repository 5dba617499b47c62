#include "dialogs/ImportFilesWindowController.h"
#include "platform/system/NativePath.h"
#include "support/Fakes.h"
#include "support/Tools.h"

#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <gtest/gtest.h>

namespace quillfern {
namespace {

/// The dialog, open over a window, and what a person does with it.
class ImportFiles : public testing::Test
{
  protected:
    ImportFiles()
    {
        dialog.setAllowedTypes(QStringLiteral("PDF,TIF"));
        QObject::connect(&dialog, &ImportFilesWindowController::ImportFilesWindowControllerDidFinish,
                         [this](const QList<FilePath>& paths) {
                             ++finished;
                             for (const FilePath& path : paths)
                                 imported.append(path.text());
                         });
        open();
    }
    void open()
    {
        dialog.resetView();
        dialog.open();
    }
    template <class T>
    T& part(const char* name)
    {
        return *dialog.findChild<T*>(QLatin1String(name));
    }
    void click(const char* name)
    {
        QTest::mouseClick(&part<QAbstractButton>(name), Qt::LeftButton, {}, QPoint(12, 12));
    }
    void clipboard(const QString& text) { QApplication::clipboard()->setText(text); }
    QString focus() { return dialog.focusWidget() ? dialog.focusWidget()->objectName() : QString(); }
    QString total() { return part<QLabel>("totalFilesFound").text(); }

    FakePanels panels;
    FakeAlerts alerts;
    QWidget window;
    ImportFilesWindowController dialog{panels, alerts, &window};
    int finished = 0;
    QStringList imported;
};

TEST_F(ImportFiles, ImportSaysWhatIsMissingAndStaysOpen)
{
    const Scratch scratch;
    const QString none = QStringLiteral("No File(s) Found!");
    const auto list = [&](const char* name, const QByteArray& lines) {
        return scratch.write(QString::fromLatin1(name), lines);
    };
    const auto left = [](int lines) {
        return QStringLiteral(
                   "Lines left out: %1. They end with a carriage return, as in texts from Windows. Save "
                   "the list with Unix line ends.")
            .arg(lines);
    };
    const struct
    {
        bool isText;
        QString entered;
        QString alert; ///< empty for none
        const char* focus;
        QStringList paths;
    } rows[] = {
        {false, {}, QStringLiteral("Please select file to import!"), "browseBtn", {}},
        {true, {}, QStringLiteral("Please paste file(s) path to import!"), "importText", {}},
        {false, list("empty.txt", ""), none, "importBtn", {}},
        {false,
         scratch.path(QStringLiteral("gone.txt")),
         none + QStringLiteral("\n\nThe text file cannot be read."),
         "importBtn",
         {}},
        {false,
         list("windows.txt", "/a.pdf\r\n/b.pdf\r\n/c.doc\r\n"),
         none + QStringLiteral("\n\n") + left(2),
         "importBtn",
         {}},
        {false, list("windows2.txt", "/a.pdf\r\n/b.pdf"), left(1), "", {QStringLiteral("/b.pdf")}},
        {false,
         list("mixed.txt", "/b.PdF\n\n/d\n/a.doc\n/a.tif\n/b.PdF\n"),
         {},
         "",
         {QStringLiteral("/b.PdF"), QStringLiteral("/a.tif")}},
        {true, QStringLiteral("/a.doc\n/folder"), none, "importBtn", {}},
        {true,
         QStringLiteral("/gone.pdf\n/x\n/a.tif\n/gone.pdf"),
         {},
         "",
         {QStringLiteral("/gone.pdf"), QStringLiteral("/a.tif")}},
    };
    for (const auto& row : rows) {
        open();
        alerts.informations.clear();
        imported.clear();
        click(row.isText ? "importFromTextBtn" : "importFromFileBtn");
        if (row.isText)
            part<QPlainTextEdit>("importText").insertPlainText(row.entered);
        else
            part<QLineEdit>("importFile").setText(row.entered);
        part<QPushButton>("importBtn").setFocus();
        click("importBtn");
        const std::string name = row.entered.toStdString();
        EXPECT_EQ(alerts.informations, row.alert.isEmpty() ? QStringList() : QStringList{row.alert}) << name;
        EXPECT_EQ(dialog.isVisible(), row.paths.isEmpty()) << name << ": files that are found are imported";
        EXPECT_EQ(imported, row.paths) << name;
        EXPECT_EQ(total(), QStringLiteral("Total Files Found : %1").arg(row.paths.size())) << name;
        if (row.paths.isEmpty()) {
            EXPECT_EQ(focus(), QString::fromLatin1(row.focus)) << name;
        }
    }
}

TEST_F(ImportFiles, PastingShowsWhatWasFoundAndImportCountsWhatStandsThere)
{
    click("importFromTextBtn");
    clipboard(QStringLiteral("/folder\n\n/b.pdf\n/a.doc\n/a.Tif\n/b.pdf"));
    click("pasteFromClipboardBtn");
    auto& text = part<QPlainTextEdit>("importText");
    EXPECT_EQ(text.toPlainText(), QStringLiteral("/b.pdf\n/a.Tif"));
    EXPECT_EQ(total(), QStringLiteral("Total Files Found : 2"));
    QApplication::clipboard()->clear();
    click("pasteFromClipboardBtn");
    EXPECT_EQ(total(), QStringLiteral("Total Files Found : 2")) << "an empty clipboard changes nothing";
    text.moveCursor(QTextCursor::End);
    QTest::keyClicks(&text, QStringLiteral("f"));
    QTest::keyClick(&text, Qt::Key_Return);
    QTest::keyClicks(&text, QStringLiteral("/c.pdf")); // "/a.Tiff" is not of an allowed type here
    click("importBtn");
    EXPECT_EQ(imported, (QStringList{QStringLiteral("/b.pdf"), QStringLiteral("/c.pdf")}));
    EXPECT_EQ(finished, 1);
    EXPECT_FALSE(dialog.isVisible());

    open();
    EXPECT_EQ(text.toPlainText(), QString());
    EXPECT_EQ(total(), QStringLiteral("Total Files Found : 0"));
}

TEST_F(ImportFiles, FilesCopiedInAFileManagerArePastedAsPaths)
{
    struct Case
    {
        const char* type;
        const char* data;
    };
    const QString paths = QStringLiteral("/d/a b.pdf\n/d/\u00e4.tif");
    for (const Case& c :
         {Case{"text/uri-list", "file:///d/a%20b.pdf\r\nfile:///d/%C3%A4.tif\r\n"},
          Case{"x-special/gnome-copied-files", "cut\nfile:///d/a%20b.pdf\nfile:///d/%C3%A4.tif"},
          Case{"text/plain", "/d/a b.pdf\n/d/\xC3\xA4.tif"}}) {
        SCOPED_TRACE(c.type);
        const auto copy = [&] {
            auto* const data = new QMimeData;
            data->setData(QString::fromLatin1(c.type), c.data);
            if (QLatin1String(c.type) == QLatin1String("x-special/gnome-copied-files"))
                data->setText(QStringLiteral("x-special/nautilus-clipboard\ncut\nfile:///d/a%20b.pdf"));
            QApplication::clipboard()->setMimeData(data);
        };
        auto& text = part<QPlainTextEdit>("importText");
        click("importFromTextBtn");
        copy();
        click("pasteFromClipboardBtn");
        EXPECT_EQ(text.toPlainText(), paths) << "by the button";
        text.clear();
        text.paste();
        EXPECT_EQ(text.toPlainText(), paths) << "by the keyboard";
        click("importBtn");
        EXPECT_EQ(imported.join(u'\n'), paths);
        imported.clear();
        open();
    }
}

TEST_F(ImportFiles, BrowsingFillsTheFieldAndCancellingImportsNothing)
{
    const Scratch scratch;
    const QString list = scratch.write(QStringLiteral("list.txt"), "/a.pdf");
    click("browseBtn");
    EXPECT_EQ(part<QLineEdit>("importFile").text(), QString()) << "the panel was closed";
    panels.answers = {{list}};
    click("browseBtn");
    EXPECT_EQ(part<QLineEdit>("importFile").text(), list);
    EXPECT_EQ(panels.opened.constLast().message, QStringLiteral("Select Text File To Import:"));
    EXPECT_EQ(panels.opened.constLast().types, QStringList{QStringLiteral("txt")});
    EXPECT_TRUE(panels.opened.constLast().anyCase);
    QTest::keyClick(&dialog, Qt::Key_Escape);
    EXPECT_FALSE(dialog.isVisible());
    open();
    part<QLineEdit>("importFile").setText(list);
    click("cancelBtn");
    EXPECT_TRUE(!dialog.isVisible() && finished == 0);
    open();
    part<QLineEdit>("importFile").setText(list);
    QTest::keyClick(&part<QLineEdit>("importFile"), Qt::Key_Return);
    EXPECT_EQ(imported, QStringList{QStringLiteral("/a.pdf")}) << "Return imports";
}

TEST_F(ImportFiles, TakesWhatIsDropped)
{
    // With Shift a source proposes to move what is dragged: a text would be cut out of its editor.
    const auto dropOf = [&](const QMimeData& data, Qt::DropActions actions) {
        QDragEnterEvent enter(QPoint(9, 9), actions, &data, Qt::LeftButton, Qt::ShiftModifier);
        QApplication::sendEvent(&dialog, &enter);
        if (!enter.isAccepted()) return false;
        EXPECT_EQ(enter.dropAction(), Qt::CopyAction);
        QDropEvent event(QPointF(9, 9), actions, &data, Qt::LeftButton, Qt::ShiftModifier);
        EXPECT_EQ(event.proposedAction(), Qt::MoveAction);
        QApplication::sendEvent(&dialog, &event);
        EXPECT_TRUE(event.isAccepted());
        EXPECT_EQ(event.dropAction(), Qt::CopyAction);
        return true;
    };
    const auto drop = [&](const QMimeData& data) {
        return dropOf(data, Qt::CopyAction | Qt::MoveAction | Qt::LinkAction);
    };
    QMimeData text;
    text.setText(QStringLiteral("/a.pdf\n/x"));
    EXPECT_TRUE(drop(text));
    EXPECT_EQ(part<QPlainTextEdit>("importText").toPlainText(), QStringLiteral("/a.pdf"));
    QMimeData list;
    list.setUrls({QUrl(QStringLiteral("file:///lists/all.TXT"))});
    drop(list);
    EXPECT_TRUE(part<QRadioButton>("importFromFileBtn").isChecked());
    EXPECT_EQ(part<QLineEdit>("importFile").text(), QStringLiteral("/lists/all.TXT"));
    QMimeData files;
    files.setUrls({QUrl(QStringLiteral("file:///c.tif")), QUrl(QStringLiteral("https://example.org/d.pdf"))});
    drop(files);
    EXPECT_EQ(part<QPlainTextEdit>("importText").toPlainText(), QStringLiteral("/c.tif"));
    QMimeData nothing;
    EXPECT_FALSE(drop(nothing));
    EXPECT_FALSE(dropOf(text, Qt::MoveAction)) << "no copy is offered";
}

} // namespace
} // namespace quillfern
