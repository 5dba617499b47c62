#include "dialogs/ImportFilesWindowController.h"
#include "platform/system/NativePath.h"
#include "support/Fakes.h"
#include "support/Tools.h"
#include "support/Widgets.h"

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

namespace quillfern {
namespace {

/// The dialog, open over a window, and what a person does with it.
class ImportFiles : public testing::Test
{
  protected:
    ImportFiles()
    {
        dialog.setAllowedTypes(u"PDF,TIF"_s);
        QObject::connect(&dialog, &ImportFilesWindowController::ImportFilesWindowControllerDidFinish,
                         [this](const QList<FilePath>& paths) {
                             ++finished;
                             imported += textsOf(paths);
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
    const QString none = u"No File(s) Found!"_s;
    const auto list = [&](const char* name, const QByteArray& lines) {
        return scratch.write(QString::fromLatin1(name), lines);
    };
    const auto left = [](int lines) {
        return u"Lines left out: %1. They end with a carriage return, as in texts from Windows. Save "
               "the list with Unix line ends."_s.arg(lines);
    };
    // whether a text is pasted, what is entered, the alert, the control that has the focus then, what is
    // imported
    const Rows<bool, QString, QString, const char*, QString> rows = {
        {false, {}, u"Please select file to import!"_s, "browseBtn", {}},
        {true, {}, u"Please paste file(s) path to import!"_s, "importText", {}},
        {false, list("empty.txt", ""), none, "importBtn", {}},
        {false, scratch.path(u"gone.txt"_s), none + u"\n\nThe text file cannot be read."_s, "importBtn", {}},
        {false,
         list("lines.txt", "/a.pdf\r\n/b.pdf\r\n/c.doc\r\n"),
         none + u"\n\n"_s + left(2),
         "importBtn",
         {}},
        {false, list("lines2.txt", "/a.pdf\r\n/b.pdf"), left(1), "", u"/b.pdf"_s},
        {false, list("mixed.txt", "/b.PdF\n/d\n/a.doc\n/a.tif\n/b.PdF\n"), {}, "", u"/b.PdF /a.tif"_s},
        {true, u"/a.doc\n/folder"_s, none, "importBtn", {}},
        {true, u"/gone.pdf\n/x\n/a.tif\n/gone.pdf"_s, {}, "", u"/gone.pdf /a.tif"_s},
    };
    for (const auto& [isText, entered, alert, focused, paths] : rows) {
        open();
        alerts.informations.clear();
        imported.clear();
        click(isText ? "importFromTextBtn" : "importFromFileBtn");
        if (isText)
            part<QPlainTextEdit>("importText").insertPlainText(entered);
        else
            part<QLineEdit>("importFile").setText(entered);
        part<QPushButton>("importBtn").setFocus();
        click("importBtn");
        const std::string name = entered.toStdString();
        EXPECT_EQ(alerts.informations, alert.isEmpty() ? QStringList() : QStringList{alert}) << name;
        EXPECT_EQ(dialog.isVisible(), paths.isEmpty()) << name << ": files that are found are imported";
        EXPECT_EQ(imported.join(u' '), paths) << name;
        EXPECT_EQ(total(), u"Total Files Found : %1"_s.arg(imported.size())) << name;
        EXPECT_EQ(paths.isEmpty() ? focus() : QString(), QString::fromLatin1(focused)) << name;
    }
}

TEST_F(ImportFiles, PastingShowsWhatWasFoundAndImportCountsWhatStandsThere)
{
    click("importFromTextBtn");
    clipboard(u"/folder\n\n/b.pdf\n/a.doc\n/a.Tif\n/b.pdf"_s);
    click("pasteFromClipboardBtn");
    auto& text = part<QPlainTextEdit>("importText");
    EXPECT_EQ(text.toPlainText(), u"/b.pdf\n/a.Tif"_s);
    EXPECT_EQ(total(), u"Total Files Found : 2"_s);
    QApplication::clipboard()->clear();
    click("pasteFromClipboardBtn");
    EXPECT_EQ(total(), u"Total Files Found : 2"_s) << "an empty clipboard changes nothing";
    text.moveCursor(QTextCursor::End);
    QTest::keyClicks(&text, u"f"_s);
    QTest::keyClick(&text, Qt::Key_Return);
    QTest::keyClicks(&text, u"/c.pdf"_s); // "/a.Tiff" is not of an allowed type here
    click("importBtn");
    EXPECT_EQ(imported, (QStringList{u"/b.pdf"_s, u"/c.pdf"_s}));
    EXPECT_EQ(finished, 1);
    EXPECT_FALSE(dialog.isVisible());

    open();
    EXPECT_EQ(text.toPlainText(), QString());
    EXPECT_EQ(total(), u"Total Files Found : 0"_s);
}

TEST_F(ImportFiles, FilesCopiedInAFileManagerArePastedAsPaths)
{
    const QString paths = u"/d/a b.pdf\n/d/\u00e4.tif"_s;
    for (const auto& [type, bytes] : Rows<const char*, const char*>{
             {"text/uri-list", "file:///d/a%20b.pdf\r\nfile:///d/%C3%A4.tif\r\n"},
             {"x-special/gnome-copied-files", "cut\nfile:///d/a%20b.pdf\nfile:///d/%C3%A4.tif"},
             {"text/plain", "/d/a b.pdf\n/d/\xC3\xA4.tif"}}) {
        SCOPED_TRACE(type);
        const auto copy = [&] {
            auto* const data = new QMimeData;
            data->setData(QString::fromLatin1(type), bytes);
            if (QLatin1String(type) == "x-special/gnome-copied-files"_L1)
                data->setText(u"x-special/nautilus-clipboard\ncut\nfile:///d/a%20b.pdf"_s);
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
    const QString list = scratch.write(u"list.txt"_s, "/a.pdf");
    click("browseBtn");
    EXPECT_EQ(part<QLineEdit>("importFile").text(), QString()) << "the panel was closed";
    panels.answers = {{list}};
    click("browseBtn");
    EXPECT_EQ(part<QLineEdit>("importFile").text(), list);
    EXPECT_EQ(panels.opened.constLast().message, u"Select Text File To Import:"_s);
    EXPECT_EQ(panels.opened.constLast().types, QStringList{u"txt"_s});
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
    EXPECT_EQ(imported, QStringList{u"/a.pdf"_s}) << "Return imports";
}

TEST_F(ImportFiles, TakesWhatIsDropped)
{
    auto& pasted = part<QPlainTextEdit>("importText");
    QMimeData text;
    text.setText(u"/a.pdf\n/x"_s);
    EXPECT_FALSE(dropOn(dialog, text, Qt::MoveAction)) << "no copy is offered";
    EXPECT_TRUE(dropOn(dialog, text)); // and not cut out of its editor
    EXPECT_EQ(pasted.toPlainText(), u"/a.pdf"_s);
    EXPECT_TRUE(dropOn(dialog, {QUrl(u"file:///lists/all.TXT"_s)}));
    EXPECT_TRUE(part<QRadioButton>("importFromFileBtn").isChecked());
    EXPECT_EQ(part<QLineEdit>("importFile").text(), u"/lists/all.TXT"_s);
    EXPECT_TRUE(dropOn(dialog, {QUrl(u"file:///c.tif"_s), QUrl(u"https://example.org/d.pdf"_s)}));
    EXPECT_EQ(pasted.toPlainText(), u"/c.tif"_s);
    EXPECT_FALSE(dropOn(dialog, QMimeData()));
}

} // namespace
} // namespace quillfern
