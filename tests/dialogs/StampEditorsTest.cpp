#include "dialogs/EditorFixture.h"
#include "dialogs/ImageStampWindowController.h"
#include "dialogs/TextStampWindowController.h"

namespace quillfern {
namespace {

class StampEditorsTest : public EditorFixture
{
  protected:
    template <class Window, class Stamp>
    void addAndDelete()
    {
        auto& stamp = newStamp<Stamp>();
        auto& editor = edit<Window>(stamp);
        auto& add = control<QWidget>(editor, "addButton");
        auto& remove = control<QWidget>(editor, "deleteButton");
        EXPECT_TRUE(add.isEnabled() && !remove.isEnabled());
        editor.deleteStampAction(); // not in the list: closes the window only
        EXPECT_EQ(removed, 0);
        EXPECT_FALSE(editor.isVisible());
        edit<Window>(stamp);
        click(add);
        EXPECT_FALSE(editor.isVisible());
        ASSERT_EQ(number.stamps.size(), 1U);
        EXPECT_EQ(number.stamps[0].get(), &stamp);

        EXPECT_EQ(&edit<Window>(stamp), &editor); // kept for the stamp
        EXPECT_TRUE(!add.isEnabled() && remove.isEnabled());
        editor.addStampAction();
        EXPECT_EQ(added, 1);
        const QPointer<QWidget> window(&editor);
        click(remove); // takes stamp and window with it
        EXPECT_EQ(removed, 1);
        EXPECT_TRUE(number.stamps.empty());
        settle();
        EXPECT_FALSE(window);
        added = removed = 0;
    }
};

TEST_F(StampEditorsTest, AddANewStampAndDeleteAListedOne)
{
    addAndDelete<TextStampWindowController, TextStamp>();
    addAndDelete<ImageStampWindowController, ImageStamp>();
}

TEST_F(StampEditorsTest, AJobLocksEveryEditor)
{
    auto& text = newStamp<TextStamp>(true);
    auto& image = newStamp<ImageStamp>();
    auto& editor = edit<TextStampWindowController>(text);
    auto& field = control<QLineEdit>(editor, "numberFormatTextField");
    field.setFocus();
    click(control<QWidget>(editor, "textColorButton"));
    editors.setEditorsEnabled(false);
    auto& late = edit<ImageStampWindowController>(image); // opened while the job runs
    for (const QWidget* window : {static_cast<QWidget*>(&editor), static_cast<QWidget*>(&late)}) {
        EXPECT_TRUE(control<QWidget>(*window, "noticeLabel").isVisible());
        EXPECT_TRUE(control<QWidget>(*window, "closeButton").isEnabled());
        for (const char* locked : {"editorPane", "addButton", "deleteButton"})
            EXPECT_FALSE(control<QWidget>(*window, locked).isEnabled()) << locked;
    }
    editor.marginAnchorChanged(BottomLeft);
    editor.textColorChanged(Qt::red);
    editor.fontChanged(0);
    editor.deleteStampAction();
    late.addStampAction();
    EXPECT_EQ(text.marginAnchor(), None);
    EXPECT_EQ(text.font, PDFFont());
    EXPECT_EQ(told + added + removed, 0);

    editors.setEditorsEnabled(true);
    EXPECT_FALSE(control<QWidget>(editor, "noticeLabel").isVisible());
    EXPECT_TRUE(control<QWidget>(editor, "deleteButton").isEnabled());
    EXPECT_TRUE(control<QWidget>(late, "addButton").isEnabled());
}

TEST_F(StampEditorsTest, EditorsGoWithTheirStamps)
{
    // A new set of stamps ends the editors of the old ones, also with a field half edited.
    auto& listed = newStamp<TextStamp>(true);
    auto& editor = edit<TextStampWindowController>(listed);
    const QPointer<QWidget> window(&editor);
    type(control<QWidget>(editor, "fontSizeSpinBox"), "1");
    type(control<QWidget>(editor, "fontsPopup"), "xyz");
    const Record empty;
    number.setData(&empty);
    EXPECT_TRUE(number.stamps.empty());
    EXPECT_TRUE(!window || !window->isVisible());
    settle();
    EXPECT_FALSE(window);

    // The stamp may go in the midst of telling of its edit.
    auto& own = newStamp<ImageStamp>(true);
    auto& second = edit<ImageStampWindowController>(own);
    struct Clearing final : NumberingDelegate
    {
        void PropertyChanged(Numbering& changed) override { changed.stamps.clear(); }
    } clearing;
    number.setDelegate(&clearing);
    type(control<QWidget>(second, "stampImageWidthTextField"), "12");
    settle();
    number.setDelegate(this);

    // The windows may go first, with the one they belong to or with what made them.
    auto parent = std::make_unique<QWidget>();
    auto above = std::make_unique<StampEditors>(number, *this, panels, alerts, parent.get());
    TextStamp stamp;
    stamp.edit(*above);
    EXPECT_EQ(parent->findChildren<StampEditorWindow*>().size(), 1);
    parent.reset();
    stamp.edit(*above);
    above->setEditorsEnabled(false);
    ImageStamp other;
    other.edit(*above);
    above.reset();
}

TEST_F(StampEditorsTest, ShowWhatOthersChange)
{
    auto& stamp = newStamp<TextStamp>(true);
    auto& editor = edit<TextStampWindowController>(stamp);
    stamp.setIsSelected(false);
    stamp.setLabel(QStringLiteral("elsewhere"));
    editors.refreshEditors();
    EXPECT_FALSE(control<QCheckBox>(editor, "enabledCheckbox").isChecked());
    EXPECT_EQ(control<QLineEdit>(editor, "labelTextField").text(), QStringLiteral("elsewhere"));
    EXPECT_EQ(told + renamed, 0);
}

} // namespace
} // namespace quillfern
