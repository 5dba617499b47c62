#include "dialogs/ColorButton.h"
#include "dialogs/EditorFixture.h"
#include "dialogs/FontMenu.h"
#include "dialogs/OpacityField.h"
#include "dialogs/RotationDial.h"
#include "dialogs/TextStampWindowController.h"

#include <QAbstractItemView>
#include <QColorDialog>
#include <QCompleter>
#include <QLabel>
#include <QSlider>
#include <QToolButton>
#include <QWindow>
#include <functional>

namespace quillfern {
namespace {

using Editor = TextStampWindowController;

class TextStampEditorTest : public EditorFixture
{
  protected:
    static QColorDialog* panel()
    {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            auto* dialog = qobject_cast<QColorDialog*>(window);
            if (dialog && dialog->isVisible()) return dialog;
        }
        return nullptr;
    }
};

TEST_F(TextStampEditorTest, EveryControlWritesItsFieldAndTells)
{
    const auto typing = [](const char* name, const char* keys) {
        return [=](Editor& e) {
            auto& field = partOf<QWidget>(e, name);
            type(field, keys);
            EXPECT_TRUE(field.hasFocus()) << name;
        };
    };
    const auto clicking = [](const char* name) {
        return [=](Editor& e) { click(partOf<QWidget>(e, name)); };
    };
    const auto choosing = [](const char* name, int steps) {
        return [=](Editor& e) {
            auto& menu = partOf<QComboBox>(e, name);
            menu.setFocus();
            for (int i = 0; i < steps; ++i)
                QTest::keyClick(&menu, Qt::Key_Down);
        };
    };
    const auto sliding = [](const char* field) {
        return [=](Editor& e) {
            QTest::keyClick(partOf<QWidget>(e, field).findChild<QSlider*>(), Qt::Key_PageDown);
        };
    };
    enum Place { Preview, Lists, Both };
    int row = 0;
    const Rows<std::function<void(Editor&)>, std::function<bool(const TextStamp&)>, Place> rows = {
        {typing("labelTextField", "Number"), [](auto& s) { return s.label() == u"Number"_s; }, Both},
        {clicking("enabledCheckbox"), [](auto& s) { return !s.isSelected(); }, Both},
        {typing("numberFormatTextField", "p. {0}"),
         [](auto& s) { return s.number.numberFormat == u"p. {0}"_s; }, Both},
        {choosing("numberTypePopup", 1),
         [](auto& s) { return s.number.numberType == NumberType::RomanNumbersCapital; }, Both},
        {typing("paddingLengthSpinBox", "4"), [](auto& s) { return s.number.paddingLength == 4; }, Preview},
        {typing("paddingCharacterTextField", "*#"),
         [](auto& s) { return s.number.paddingCharacter == u"*"_s; }, Preview},
        {typing("fontSizeSpinBox", "10.5"), [](auto& s) { return s.font.fontSize == 10.5; }, Preview},
        {clicking("underlineCheckbox"), [](auto& s) { return s.isUnderline; }, Preview},
        {clicking("embedFontCheckbox"), [](auto& s) { return s.isEmbedFont; }, Preview},
        {sliding("textOpacityField"), [](auto& s) { return s.textOpacity == 90; }, Preview},
        {[](Editor& e) { type(*partOf<OpacityField>(e, "textOpacityField").exactField(), "75"); },
         [](auto& s) { return s.textOpacity == 75; }, Preview},
        {sliding("outlineOpacityField"), [](auto& s) { return s.outlineOpacity == 90; }, Preview},
        {typing("outlineWidthSpinBox", "3"), [](auto& s) { return s.outlineWidth == 3; }, Preview},
        {typing("rotationSpinBox", "45.7"), [](auto& s) { return s.textRotation == 45.7; }, Preview},
        {typing("rotationSpinBox", "-30"), [](auto& s) { return s.textRotation == -30; }, Preview},
        {clicking("rotate90Button"), [](auto& s) { return s.textRotation == 90; }, Preview},
        {[](Editor& e) {
             auto& dial = partOf<RotationDial>(e, "rotationDial");
             QTest::mouseClick(&dial, Qt::LeftButton, {}, QPoint(dial.width() / 2 + 1, 2));
         },
         [](auto& s) { return s.textRotation == 90; }, Preview},
        {[](Editor& e) { QTest::keyClick(&partOf<QWidget>(e, "rotationDial"), Qt::Key_Down); },
         [](auto& s) { return s.textRotation == 359; }, Preview},
        {clicking("marginBottomMiddleButton"),
         [](auto& s) { return s.marginAnchor() == MarginAnchor::BottomMiddle; }, Preview},
        {clicking("symmetryCheckbox"), [](auto& s) { return s.isSymmetry(); }, Lists},
        {clicking("underContentCheckbox"), [](auto& s) { return s.isDrawUnderPDFContent(); }, Lists},
    };
    for (const auto& [act, holds, shows] : rows) {
        SCOPED_TRACE(testing::Message() << "row " << ++row);
        auto& stamp = newStamp<TextStamp>();
        auto& editor = edit<Editor>(stamp);
        act(editor);
        EXPECT_TRUE(holds(stamp));
        EXPECT_EQ(told > 0, shows != Lists);
        EXPECT_EQ(renamed > 0, shows != Preview);
        editor.close();
    }
}

TEST_F(TextStampEditorTest, StrangeValuesSurviveUntilTheyAreEdited)
{
    auto& stamp = newStamp<TextStamp>(true);
    stamp.textOpacity = 250;
    stamp.outlineOpacity = -5;
    stamp.outlineWidth = 1'000'000'000;
    stamp.number.paddingLength = 70'000;
    stamp.number.paddingCharacter = u"ab"_s;
    stamp.number.numberFormat = std::nullopt;
    stamp.number.numberType = NumberType{9};
    stamp.underlineStyle = UnderlineStyle{3};
    stamp.isUnderline = true;
    stamp.textRotation = 1234.5678;
    stamp.font.fontSize = 0;
    stamp.font.fontName = u"No Such Family"_s;
    stamp.font.fontColor = std::nullopt;
    stamp.outlineColor = QColor(1, 2, 3, 4);
    stamp.setMarginAnchor(MarginAnchor{12});
    stamp.setLabel(std::nullopt);
    TextStamp before = stamp;

    auto& editor = edit<Editor>(stamp);
    for (int i = 0; i < 40; ++i)
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    QTest::keyClick(&editor, Qt::Key_Escape);
    EXPECT_FALSE(editor.isVisible());
    edit<Editor>(stamp);
    EXPECT_EQ(told + renamed, 0);
    EXPECT_EQ(stamp.number, before.number);
    EXPECT_EQ(stamp.font, before.font);
    EXPECT_EQ(stamp.label(), before.label());
    EXPECT_EQ(stamp.textRotation, 1234.5678);
    TextStamp kept = stamp;
    kept.fillAbsentValues(); // a record ends before a value that is absent
    before.fillAbsentValues();
    EXPECT_EQ(kept.getData(), before.getData());
    EXPECT_EQ(partOf<QLabel>(editor, "textOpacityLabel").text(), u"250%"_s);
    EXPECT_EQ(partOf<FontMenu>(editor, "fontsPopup").currentText(), u"No Such Family"_s);

    QTest::keyClick(partOf<OpacityField>(editor, "textOpacityField").exactField(), Qt::Key_Down);
    EXPECT_EQ(stamp.textOpacity, 100);
    EXPECT_EQ(partOf<QLabel>(editor, "textOpacityLabel").text(), u"100%"_s);
}

TEST_F(TextStampEditorTest, TypingGoesOnWhereItIs)
{
    auto& stamp = newStamp<TextStamp>();
    auto& editor = edit<Editor>(stamp);
    auto& field = partOf<QLineEdit>(editor, "numberFormatTextField");
    field.setFocus();
    field.setCursorPosition(3);
    QTest::keyClicks(&field, u" and"_s);
    click(partOf<QWidget>(editor, "insertTotalButton"));
    QTest::keyClicks(&field, u"!"_s);
    QTest::keyClick(&field, Qt::Key_Return); // presses no button
    EXPECT_EQ(stamp.number.numberFormat, u"{0} and{1}! of {1}"_s);
    EXPECT_EQ(field.cursorPosition(), 11);
    EXPECT_TRUE(field.hasFocus() && editor.isVisible());
    editors.refreshEditors();
    EXPECT_EQ(field.cursorPosition(), 11);
}

TEST_F(TextStampEditorTest, TheTitleNamesTheStampToTheLetter)
{
    auto& stamp = newStamp<TextStamp>();
    auto& editor = edit<Editor>(stamp);
    EXPECT_EQ(editor.windowHandle()->title(), u"Text Stamp Properties [ Numbers [{0} of {1}] ]"_s);
    for (const char* pattern : {"*", "%1 %2 [*]"}) {
        type(partOf<QLineEdit>(editor, "numberFormatTextField"), pattern);
        EXPECT_EQ(editor.windowHandle()->title(),
                  u"Text Stamp Properties [ Numbers ["_s + QString::fromLatin1(pattern) + u"] ]"_s);
    }
}

TEST_F(TextStampEditorTest, TheSampleShowsWhatIsPrinted)
{
    const Rows<NumberFormat, const char*, bool> rows = {
        {{u"{0} of {1}"_s, NumberType::Numbers, 3, u"0"_s}, "001 of 120|009 of 120|010 of 120", false},
        {{u"{0}"_s, NumberType::RomanNumbersSmall, 1, u"0"_s}, "i|ix|x", false},
        {{u"{1}"_s, NumberType::Numbers, 1, u"0"_s}, "1|9|10", true},
        {{u"{1} & {0}"_s, NumberType::PlainText, 1, u"0"_s}, "{1} & {0}|{1} & {0}|{1} & {0}", false},
    };
    for (const auto& [format, sample, isAdvised] : rows) {
        auto& stamp = newStamp<TextStamp>();
        stamp.number = format;
        auto& editor = edit<Editor>(stamp);
        QStringList shown;
        for (const char* name : {"sampleFirstLabel", "sampleNinthLabel", "sampleTenthLabel"})
            shown.append(partOf<QLabel>(editor, name).text());
        EXPECT_EQ(shown.join(u'|'), QString::fromLatin1(sample));
        EXPECT_EQ(!partOf<QLabel>(editor, "templateAdviceLabel").text().isEmpty(), isAdvised) << sample;
    }
}

TEST_F(TextStampEditorTest, AnchorsAreChosenWithTheArrowKeysAndOneIsBordered)
{
    auto& stamp = newStamp<TextStamp>();
    auto& editor = edit<Editor>(stamp);
    const auto bordered = [&] {
        QString names;
        for (const auto* button : partOf<QWidget>(editor, "anchorGrid").findChildren<QToolButton*>())
            if (button->isChecked()) names += button->objectName();
        return names;
    };
    EXPECT_EQ(bordered(), QString()); // a new stamp has no anchor
    click(partOf<QWidget>(editor, "marginMiddleMiddleButton"));
    const Rows<Qt::Key, MarginAnchor, const char*> rows = {
        {Qt::Key_Right, MarginAnchor::MiddleRight, "marginMiddleRightButton"},
        {Qt::Key_Down, MarginAnchor::BottomRight, "marginBottomRightButton"},
        {Qt::Key_Left, MarginAnchor::BottomMiddle, "marginBottomMiddleButton"},
        {Qt::Key_Up, MarginAnchor::MiddleMiddle, "marginMiddleMiddleButton"}};
    for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        editor.setLayoutDirection(direction);
        for (const auto& [key, anchor, button] : rows) {
            QTest::keyClick(QApplication::focusWidget(), key);
            EXPECT_EQ(stamp.marginAnchor(), anchor) << button;
            EXPECT_EQ(bordered(), QString::fromLatin1(button));
        }
    }
    stamp.setMarginAnchor(MarginAnchor::None);
    editor.setMarginAnchor();
    EXPECT_EQ(bordered(), QString());
}

TEST_F(TextStampEditorTest, AFamilyIsFoundByTypingAndKeepsSizeAndColour)
{
    ASSERT_GT(number.fonts().size(), 1U);
    const PDFFont wanted = number.fonts().back();
    auto& stamp = newStamp<TextStamp>();
    stamp.font.fontSize = 31;
    stamp.font.fontColor = QColor(Qt::red);
    auto& editor = edit<Editor>(stamp);
    auto& menu = partOf<FontMenu>(editor, "fontsPopup");
    EXPECT_EQ(menu.count(), static_cast<int>(number.fonts().size()));

    type(menu, wanted.fontName->toUpper().toUtf8().constData());
    EXPECT_EQ(stamp.font.fontName, u"Helvetica"_s); // until it is chosen
    menu.completer()->popup()->hide();
    QTest::keyClick(&menu, Qt::Key_Return);
    PDFFont expected = wanted;
    expected.fontSize = 31;
    expected.fontColor = QColor(Qt::red);
    EXPECT_EQ(stamp.font, expected);
    EXPECT_EQ(told, 1);
    EXPECT_FALSE(number.isUpdating());
    EXPECT_EQ(menu.currentText(), *wanted.fontName);

    type(menu, "no such fam");
    menu.completer()->popup()->hide();
    partOf<QWidget>(editor, "labelTextField").setFocus();
    EXPECT_EQ(menu.currentText(), *wanted.fontName);
    EXPECT_EQ(stamp.font, expected);
    editor.fontChanged(-1);
    editor.fontChanged(menu.count());
    EXPECT_EQ(stamp.font, expected);
}

TEST_F(TextStampEditorTest, BoldAndItalicFollowTheFamily)
{
    auto& stamp = newStamp<TextStamp>();
    stamp.isBold = stamp.isItalic = true;
    auto& editor = edit<Editor>(stamp);
    auto& menu = partOf<FontMenu>(editor, "fontsPopup");
    const struct
    {
        const char* family;
        bool bold;
        bool italic;
    } families[] = {
        {"Liberation Sans", true, true}, {"DejaVu Sans", true, false}, {"Droid Sans Fallback", false, false}};
    for (const auto& family : families) {
        const int row = menu.findText(QLatin1String(family.family));
        ASSERT_GE(row, 0) << family.family << ": test.sh installs it";
        editor.fontChanged(row);
        EXPECT_EQ(partOf<QWidget>(editor, "boldFontCheckbox").isEnabled(), family.bold) << family.family;
        EXPECT_EQ(partOf<QWidget>(editor, "italicFontCheckbox").isEnabled(), family.italic) << family.family;
        EXPECT_TRUE(stamp.isBold && stamp.isItalic) << "chosen again with a family that has them";
    }
}

TEST_F(TextStampEditorTest, OneColourPanelServesWhoeverAskedLast)
{
    auto& first = newStamp<TextStamp>();
    auto& second = newStamp<TextStamp>(true);
    auto& firstEditor = edit<Editor>(first);
    auto& secondEditor = edit<Editor>(second);
    click(partOf<QWidget>(firstEditor, "textColorButton"));
    QColorDialog* const dialog = panel();
    ASSERT_TRUE(dialog);
    EXPECT_EQ(dialog->currentColor(), QColor(Qt::black));
    EXPECT_FALSE(dialog->testOption(QColorDialog::ShowAlphaChannel));
    told = 0;
    dialog->setCurrentColor(QColor(Qt::red));
    EXPECT_EQ(first.font.fontColor, QColor(255, 0, 0));
    EXPECT_EQ(told, 1);
    EXPECT_EQ(partOf<ColorButton>(firstEditor, "textColorButton").color(), QColor(255, 0, 0));

    click(partOf<QWidget>(secondEditor, "outlineColorButton"));
    EXPECT_EQ(panel(), dialog);
    EXPECT_EQ(second.outlineColor, QColor(Qt::black)); // opening the panel with a colour changes no stamp
    dialog->setCurrentColor(QColor(0, 0, 200));
    EXPECT_EQ(second.outlineColor, QColor(0, 0, 200));
    EXPECT_EQ(first.font.fontColor, QColor(255, 0, 0));
    EXPECT_EQ(first.outlineColor, QColor(Qt::black));

    firstEditor.close(); // the panel belongs to another editor
    EXPECT_TRUE(panel());
    number.stamps.clear();
    dialog->setCurrentColor(QColor(Qt::green)); // the stamp is gone
    editors.removeOrphans();
    EXPECT_FALSE(panel()) << "the panel goes with the editor that it is for";
    dialog->setCurrentColor(QColor(Qt::cyan));
    settle();
    dialog->setCurrentColor(QColor(Qt::white));
}

TEST_F(TextStampEditorTest, TheLettersOfLabelsLeadToTheirControls)
{
    auto& editor = edit<Editor>(newStamp<TextStamp>());
    for (const auto& [key, name] :
         {std::pair(Qt::Key_S, "marginTopLeftButton"), std::pair(Qt::Key_M, "fontsPopup"),
          std::pair(Qt::Key_R, "rotationDial")}) {
        QTest::keyClick(&editor, key, Qt::AltModifier);
        EXPECT_EQ(QApplication::focusWidget()->objectName(), QString::fromLatin1(name));
    }
}

} // namespace
} // namespace quillfern
