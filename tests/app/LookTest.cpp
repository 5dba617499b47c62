#include "app/AppFixture.h"
#include "app/TableRows.h"
#include "app/WindowLooks.h"
#include "platform/drawing/FontCatalog.h"
#include "stamps/ImageStamp.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QApplication>
#include <QDialog>
#include <QFontDatabase>
#include <QLabel>
#include <QLayout>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QRegularExpression>
#include <QTranslator>

namespace quillfern {
namespace {

/// A translation into fullwidth letters: a text that is still in ordinary Latin letters was not translated.
class WideLetters final : public QTranslator
{
  public:
    [[nodiscard]] bool isEmpty() const override { return false; }
    [[nodiscard]] QString translate(const char*, const char* source, const char*, int) const override
    {
        QString text = QString::fromUtf8(source);
        for (qsizetype i = 0; i < text.size(); ++i) {
            const bool isPlace = i > 0 && text[i - 1] == u'%'; // "%n", "%L1"
            if (!isPlace && isLatin(text[i])) text[i] = QChar(text[i].unicode() - u'A' + 0xFF21);
        }
        return text;
    }
    static bool isLatin(QChar c) { return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z'); }
};

class Look : public AppTest
{
  protected:
    void TearDown() override
    {
        QApplication::setLayoutDirection(Qt::LeftToRight);
        QApplication::setFont(font_);
    }

    /// Opens every window of the program in turn and calls `look` with its name.
    void forEachWindow(const std::function<void(const char* name, QWidget& window)>& look)
    {
        ui().settingTabView->setCurrentIndex(0);
        look("empty window", window());
        fill({pdf("1.pdf", 2), pdf("2.pdf", 3), scratch.write(u"3.png"_s, "no picture")});
        addStamp("{0}/{1}")->setLabel(u"7"_s);
        number().stamps.push_back(std::make_shared<ImageStamp>());
        number().endUpdate(true);
        select({0});
        for (int tab = 0; tab < 3; ++tab) {
            ui().settingTabView->setCurrentIndex(tab);
            QTest::qWait(1);
            const char* names[] = {"window, stamps", "window, pages", "window, output"};
            look(names[tab], window());
        }
        ui().settingTabView->setCurrentIndex(0);
        const std::pair<const char*, QAction*> dialogs[] = {{"import", actions().importFiles},
                                                            {"password", actions().pdfPasswordButton},
                                                            {"about", actions().aboutMenuItem}};
        for (const auto& [name, action] : dialogs)
            lookAtNew(name, look, [action = action] { action->trigger(); });
        for (int row : {0, 1}) {
            selectRows(*ui().stampsTableView, {row});
            lookAtNew(row == 0 ? "text editor" : "picture editor", look,
                      [this] { actions().editStamp->trigger(); });
        }
        lookAtNew("progress", look, [this] {
            convert();
            waitForEnd();
        });
    }

    void setFont(const char* family, double factor)
    {
        QFont font = font_;
        font.setFamily(QString::fromLatin1(family));
        font.setPointSizeF(font.pointSizeF() * factor);
        QApplication::setFont(font);
    }

    static std::string where(const char* window, const QWidget& widget)
    {
        return std::string(window) + ": " + nameOf(widget);
    }

    /// The control that follows a label in its layout and has no words of its own; null when there is none.
    static const QWidget* fieldBeside(const QLabel& label)
    {
        if (!label.isVisible() || !label.text().contains(QRegularExpression(u"\\p{L}"_s))) return nullptr;
        for (const QLayout* layout : label.window()->findChildren<QLayout*>()) {
            const int at = layout->indexOf(&label);
            const QLayoutItem* next = at < 0 ? nullptr : layout->itemAt(at + 1);
            const QWidget* field = next ? next->widget() : nullptr;
            if (field && (field->focusPolicy() & Qt::TabFocus) &&
                !qobject_cast<const QAbstractButton*>(field))
                return field;
        }
        return nullptr;
    }

  private:
    void lookAtNew(const char* name, const std::function<void(const char*, QWidget&)>& look,
                   const std::function<void()>& open)
    {
        open();
        QTest::qWait(20);
        QPointer<QWidget> shown;
        for (QWidget* each : QApplication::topLevelWidgets())
            if (each != &window() && each->isVisible() && qobject_cast<QDialog*>(each)) shown = each;
        ASSERT_TRUE(shown) << name;
        QApplication::setActiveWindow(shown);
        look(name, *shown);
        QTest::keyClick(shown, Qt::Key_Escape);
        QTest::qWait(1);
        EXPECT_FALSE(shown && shown->isVisible()) << name; // some windows are deleted when they are closed
        QApplication::setActiveWindow(&window());
    }

    const QFont font_ = QApplication::font();
};

TEST_F(Look, EveryTextCanBeTranslated)
{
    WideLetters language;
    QCoreApplication::installTranslator(&language);
    start();
    // File names and other names, programs and keys, which are not translated.
    static const QRegularExpression known(
        u"Quillfern|[123]\\.(pdf|png)|\\b(pdf|png)\\b|"
        "Qt|Helvetica|\\bPDF\\b|\\b\\d+ KB|\\d\\d-\\p{L}+-\\d{4} \\d+:\\d\\d [AP]M|"
        "(Ctrl\\+|Shift\\+|Alt\\+)*\\b([A-Z]|F\\d+|Del|Up|Down|Ins|Home|End)\\b"_s);
    const QString substitute = drawing::FontCatalog().resolveFamily(u"Helvetica"_s);
    const auto check = [&](const std::string& of, const QString& text) {
        QString rest = text;
        rest.remove(scratch.path()).remove(known).remove(substitute);
        EXPECT_TRUE(std::none_of(rest.begin(), rest.end(), WideLetters::isLatin))
            << of << ": " << text.toStdString();
    };
    forEachWindow([&](const char* name, QWidget& top) {
        for (QWidget* each : visibleWidgets(top))
            for (const QString& text : textsOf(*each))
                check(where(name, *each), text);
        for (const QAction* action : top.findChildren<QAction*>())
            for (const QString& text :
                 {action->text(), action->toolTip(), action->statusTip(), action->iconText()})
                check(name, text);
    });
    actions().removeAllFilesButton->trigger();
    ui().outputFolderPath->clear();
    actions().addFiles->trigger();
    actions().addFolder->trigger();
    actions().loadStamps->trigger();
    actions().saveStamps->trigger();
    for (const desktop::OpenPanel& panel : panels.opened)
        check("panel", panel.message);
    for (const desktop::SavePanel& panel : panels.saved)
        check("panel", panel.message);
    for (const QString& text : alerts.criticals + alerts.informations + alerts.questions)
        check("alert", text);
    EXPECT_FALSE(alerts.questions.isEmpty());
    const QDir logs(folders.getAppPath().child(u"Logs"_s).text());
    for (const QString& name : logs.entryList(QDir::Files)) {
        const QByteArray log = readFile(logs.filePath(name));
        EXPECT_TRUE(log.contains("\"Completed\"") && log.contains("\"No Pages\"")) << log.toStdString();
    }
    EXPECT_EQ(logs.entryList(QDir::Files).size(), 1);
    QCoreApplication::removeTranslator(&language);
}

TEST_F(Look, TheKeyboardReachesEveryControlAndTellsWhatItIs)
{
    start();
    forEachWindow([&](const char* name, QWidget& top) {
        const std::vector<QWidget*> round = tabRound(top);
        for (QWidget* stop : tabStops(top)) {
            EXPECT_EQ(std::count(round.begin(), round.end(), stop), 1) << where(name, *stop);
            QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(stop);
            EXPECT_TRUE(accessible && !accessible->text(QAccessible::Name).isEmpty()) << where(name, *stop);
            EXPECT_FALSE(stop->toolTip().isEmpty() && !qobject_cast<QTabBar*>(stop)) << where(name, *stop);
        }
        for (std::size_t i = 1; i < round.size(); ++i)
            EXPECT_TRUE(round[i]->parentWidget() != round[i - 1]->parentWidget() ||
                        isAfter(*round[i], *round[i - 1]))
                << where(name, *round[i]) << " comes after " << nameOf(*round[i - 1]);
        QSet<QString> keys;
        const auto take = [&](const QKeySequence& sequence, const QWidget& owner) {
            const QString key = sequence.toString();
            EXPECT_TRUE(key.isEmpty() || !keys.contains(key))
                << where(name, owner) << ": Alt+" << key.toStdString();
            keys.insert(key);
        };
        for (QLabel* label : top.findChildren<QLabel*>()) {
            EXPECT_TRUE(label->buddy() || !fieldBeside(*label)) << where(name, *label);
            if (label->buddy() && label->isVisible()) take(QKeySequence::mnemonic(label->text()), *label);
        }
        for (QAbstractButton* button : top.findChildren<QAbstractButton*>())
            if (button->isVisible()) take(button->shortcut(), *button);
    });
}

struct Letters
{
    const char* name;
    const char* family; ///< a wide, a narrow or a tall font, as desktops use them
    double size;        ///< of the desktop's usual size
    Qt::LayoutDirection direction = Qt::LeftToRight;
};

class LookInLetters : public Look, public testing::WithParamInterface<Letters>
{
  protected:
    QRect placeOfPreview()
    {
        return {ui().previewArea->mapTo(&window(), QPoint(0, 0)), ui().previewArea->size()};
    }
};

TEST_P(LookInLetters, NothingIsCutOffInTheSmallestWindow)
{
    const Letters& letters = GetParam();
    ASSERT_TRUE(QFontDatabase::hasFamily(QLatin1String(letters.family))) << "test.sh installs it";
    QApplication::setLayoutDirection(letters.direction);
    setFont(letters.family, letters.size);
    start();
    std::optional<QRect> preview;
    forEachWindow([&](const char* name, QWidget& top) {
        if (&top == &window()) {
            top.resize(1024, 640);
            QTest::qWait(250); // the preview moves to its place
            const QRect now = placeOfPreview();
            EXPECT_EQ(now, preview.value_or(now)) << name << ": the preview jumps";
            preview = now;
        }
        EXPECT_LE(top.width(), 1024) << name;
        EXPECT_LE(top.height(), top.parent() ? 600 : 640) << name; // a dialog has a title bar
        for (const std::string& problem : cutOff(top))
            ADD_FAILURE() << name << ": " << problem;
    });
    ui().labelTimeTaken->setText(u"Total Time Taken : In Process... 0/0"_s);
    ui().cancelBtn->show(); // with this button the text has less room
    QTest::qWait(1);
    EXPECT_EQ(placeOfPreview(), preview) << "the preview jumps while files are gathered";
}

INSTANTIATE_TEST_SUITE_P(, LookInLetters,
                         testing::Values(Letters{"Wide", "DejaVu Sans", 1}, Letters{"Narrow", "Cantarell", 1},
                                         Letters{"Tall", "Open Sans", 1},
                                         Letters{"RightToLeft", "DejaVu Sans", 1, Qt::RightToLeft},
                                         Letters{"WideLarger", "DejaVu Sans", 1.2},
                                         Letters{"NarrowLarger", "Cantarell", 1.2},
                                         Letters{"TallLarger", "Open Sans", 1.2}),
                         [](const auto& letters) { return std::string(letters.param.name); });

TEST_F(Look, EveryCommandIsInAMenuUnderALetterOfItsOwn)
{
    start();
    std::set<QAction*> inMenus;
    const std::function<void(const QString&, const QList<QAction*>&, QSet<QString>)> walk =
        [&](const QString& name, const QList<QAction*>& actions, QSet<QString> taken) {
            for (QAction* action : actions) {
                inMenus.insert(action);
                const QString letter = QKeySequence::mnemonic(action->text()).toString();
                EXPECT_TRUE(letter.isEmpty() || !taken.contains(letter))
                    << name.toStdString() << ": " << action->text().toStdString();
                taken.insert(letter);
                if (action->menu()) walk(action->text(), action->menu()->actions(), {});
            }
        };
    QSet<QString> buttons; // the letters that press buttons of the window
    for (const QAbstractButton* button : window().findChildren<QAbstractButton*>())
        if (!button->shortcut().isEmpty()) buttons.insert(button->shortcut().toString());
    EXPECT_EQ(buttons.size(), 7);
    walk(u"menu bar"_s, window().menuBar()->actions(), buttons);
    for (QMenu* menu : window().findChildren<QMenu*>())
        if (!inMenus.contains(menu->menuAction())) {
            const std::set<QAction*> before = inMenus;
            walk(menu->title(), menu->actions(), {});
            inMenus = before; // context menus repeat commands of the menu bar
        }
    for (QAction* action : window().findChildren<QAction*>()) {
        const bool isCommand = !action->isSeparator() && !action->menu() && !action->text().isEmpty() &&
                               qobject_cast<QMainWindow*>(action->parent());
        EXPECT_TRUE(!isCommand || inMenus.contains(action)) << action->text().toStdString();
    }
}

} // namespace
} // namespace quillfern
