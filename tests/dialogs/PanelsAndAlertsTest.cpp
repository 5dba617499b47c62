#include "dialogs/WidgetAlerts.h"
#include "dialogs/WidgetPanels.h"
#include "platform/system/Folders.h"
#include "support/Tools.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLineEdit>
#include <QListView>
#include <QMessageBox>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>

namespace quillfern {
namespace {

/// The panel that stands open over a window.
QFileDialog* panelOver(const QWidget& window)
{
    QFileDialog* found = nullptr;
    for (QFileDialog* const dialog : window.findChildren<QFileDialog*>())
        if (dialog->isVisible()) found = dialog;
    return found;
}

void typeAndAccept(QFileDialog& panel, const QString& path)
{
    panel.findChild<QLineEdit*>(u"fileNameEdit"_s)->setText(path);
    auto* const box = panel.findChild<QDialogButtonBox*>();
    const bool saves = panel.acceptMode() == QFileDialog::AcceptSave;
    QTest::mouseClick(box->button(saves ? QDialogButtonBox::Save : QDialogButtonBox::Open), Qt::LeftButton);
    QTest::qWait(0);
}

/// Presses a key in the next message box; `look` is called with the box before.
void answerNextBox(Qt::Key key, std::function<void(const QMessageBox&)> look = {})
{
    QTimer::singleShot(50, [key, look = std::move(look)] {
        auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        if (look) look(*box);
        QTest::keyClick(box, key);
    });
}

TEST(WidgetPanels, PickFilesOfTheirTypesAndComeBackToTheirFolder)
{
    const Scratch scratch;
    const QString list = scratch.write(u"list.txt"_s, "");
    const QString loud = scratch.write(u"loud.TXT"_s, "");
    QWidget window;
    WidgetPanels panels;
    QStringList chosen;
    desktop::OpenPanel text{u"Pick:"_s, {u"txt"_s}, false, false};
    const auto open = [&](const desktop::OpenPanel& panel) {
        chosen.clear();
        panels.open(&window, panel, [&](const QList<FilePath>& paths) { chosen = textsOf(paths); });
        return panelOver(window);
    };

    QPointer<QFileDialog> panel = open(text);
    ASSERT_NE(panel, nullptr);
    EXPECT_EQ(panel->windowTitle(), text.message);
    EXPECT_EQ(panel->windowModality(), Qt::WindowModal);
    EXPECT_EQ(panel->nameFilters(), QStringList{u"Text files (*.txt)"_s});
    panel->reject();
    QTest::qWait(0);
    EXPECT_TRUE(panel.isNull() && chosen.isEmpty());

    typeAndAccept(*open(text), loud);
    EXPECT_TRUE(chosen.isEmpty()) << "types are compared with case";
    text.anyCase = true;
    panel = open(text);
    EXPECT_EQ(panel->nameFilters(), QStringList{u"Text files (*.txt *.TXT)"_s});
    EXPECT_FALSE(panel->filter().testFlag(QDir::CaseSensitive)) << "loud.TXT is hidden";
    typeAndAccept(*panel, loud);
    EXPECT_EQ(chosen, QStringList{loud});
    typeAndAccept(*open(text), list);
    EXPECT_EQ(chosen, QStringList{list});
    panel = open(text);
    EXPECT_EQ(panel->directory().absolutePath(), QFileInfo(list).absolutePath());
    panel->reject();
    desktop::OpenPanel several{u"Pick:"_s, {u"PDF"_s, u"pdf"_s}, false, true};
    panel = open(several);
    EXPECT_NE(panel->directory().absolutePath(), QFileInfo(list).absolutePath()) << "a folder for each kind";
    EXPECT_EQ(panel->nameFilters(), QStringList{u"PDF files (*.PDF *.pdf)"_s});
    panel->reject();
    several.types = QStringList{u"txt"_s, u"TXT"_s};
    typeAndAccept(*open(several), u"\"%1\" \"%2\""_s.arg(list, loud));
    EXPECT_EQ(chosen, (QStringList{list, loud}));
}

TEST(WidgetPanels, PickSeveralFolders)
{
    const Scratch scratch;
    const QStringList names = {u"\"a\""_s, u"b \"c"_s, u"d"_s};
    for (const QString& name : names)
        ASSERT_TRUE(QDir(scratch.path()).mkdir(name));
    QWidget window;
    WidgetPanels panels;
    for (const bool isTyped : {false, true}) {
        QStringList chosen;
        panels.open(&window, {u"Pick:"_s, {}, true, true},
                    [&](const QList<FilePath>& paths) { chosen = textsOf(paths); });
        QFileDialog* const panel = panelOver(window);
        panel->setDirectory(scratch.path());
        auto* const view = panel->findChild<QListView*>(u"listView"_s);
        const auto row = [&](int i) { return view->model()->index(i, 0, view->rootIndex()); };
        ASSERT_TRUE(QTest::qWaitFor([&] { return row(0).data() == names[0] && row(2).data() == names[2]; }));
        QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::NoModifier,
                          view->visualRect(row(0)).center());
        QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::ControlModifier,
                          view->visualRect(row(1)).center());
        auto* const line = panel->findChild<QLineEdit*>(u"fileNameEdit"_s);
        if (isTyped) {
            line->setText(names[2]);
            line->setModified(true); // as after typing
        }
        QTest::mouseClick(panel->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Open),
                          Qt::LeftButton);
        QStringList expected;
        for (const QString& name : isTyped ? names.mid(2) : names.mid(0, 2))
            expected.append(scratch.path(name));
        EXPECT_EQ(chosen, expected);
        QTest::qWait(0);
    }
}

TEST(WidgetPanels, SaveUnderTheTypeAndAskBeforeReplacing)
{
    const Scratch scratch;
    const QString there = scratch.write(u"there.txt"_s, "");
    const QString dotted = scratch.write(u"version 1.2.txt"_s, "");
    QWidget window;
    WidgetPanels panels;
    QString chosen;
    const auto save = [&](const QString& typed) {
        chosen.clear();
        panels.save(&window, {u"Save:"_s, u"txt"_s, u"Export.txt"_s},
                    [&](const FilePath& path) { chosen = path.text(); });
        QFileDialog* const panel = panelOver(window);
        EXPECT_EQ(QFileInfo(panel->selectedFiles().value(0)).fileName(), u"Export.txt"_s);
        typeAndAccept(*panel, typed);
        if (panelOver(window)) panelOver(window)->reject();
        QTest::qWait(0);
        return chosen;
    };
    EXPECT_EQ(save(scratch.path(u"new"_s)), scratch.path(u"new.txt"_s));
    EXPECT_EQ(save(scratch.path(u"v1.3"_s)), scratch.path(u"v1.3.txt"_s));
    for (const QString& typed : {there, scratch.path(u"there"_s), scratch.path(u"version 1.2"_s)}) {
        answerNextBox(Qt::Key_Escape);
        EXPECT_EQ(save(typed), QString()) << typed.toStdString();
    }
    answerNextBox(Qt::Key_Y);
    EXPECT_EQ(save(there), there);
}

TEST(WidgetAlerts, TellAndAskInTheNameOfTheApplication)
{
    QWidget window;
    WidgetAlerts alerts;
    const auto look = [&](const QMessageBox& box) {
        EXPECT_EQ(box.windowTitle(), getAppTitle());
        EXPECT_EQ(box.text(), u"<b>one</b>\ntwo"_s);
        EXPECT_EQ(box.textFormat(), Qt::PlainText);
        EXPECT_EQ(box.windowModality(), Qt::WindowModal);
        EXPECT_EQ(box.parentWidget(), &window);
    };
    const QString message = u"<b>one</b>\r\ntwo"_s;
    for (const auto& [key, answer] :
         {std::pair(Qt::Key_Return, true), std::pair(Qt::Key_Escape, false), std::pair(Qt::Key_N, false)}) {
        answerNextBox(key, look);
        EXPECT_EQ(alerts.confirm(&window, message), answer) << key;
    }
    using desktop::QuitChoice;
    const auto buttons = [&](const QMessageBox& box) {
        look(box);
        EXPECT_EQ(box.button(QMessageBox::Retry)->text(), u"Try Again"_s);
        EXPECT_EQ(box.button(QMessageBox::Discard)->text(), u"Quit Anyway"_s);
    };
    for (const auto& [key, answer] :
         {std::pair(Qt::Key_Return, QuitChoice::TryAgain), std::pair(Qt::Key_Escape, QuitChoice::Stay)}) {
        answerNextBox(key, buttons);
        EXPECT_EQ(alerts.chooseToQuit(&window, message), answer) << key;
    }
    QTimer::singleShot(50, [] {
        auto* const box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        QTest::mouseClick(box->button(QMessageBox::Discard), Qt::LeftButton);
    });
    EXPECT_EQ(alerts.chooseToQuit(&window, message), QuitChoice::QuitAnyway);
    answerNextBox(Qt::Key_Return, look);
    alerts.information(&window, message);
    answerNextBox(Qt::Key_Escape, look);
    alerts.critical(&window, message);
}

} // namespace
} // namespace quillfern
