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
        auto& add = partOf<QWidget>(editor, "addButton");
        auto& remove = partOf<QWidget>(editor, "deleteButton");
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
        click(remove); // removes the stamp and closes the window
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
    auto& field = partOf<QLineEdit>(editor, "numberFormatTextField");
    field.setFocus();
    click(partOf<QWidget>(editor, "textColorButton"));
    editors.setEditorsEnabled(false);
    auto& late = edit<ImageStampWindowController>(image); // opened while the job runs
    for (const QWidget* window : {static_cast<QWidget*>(&editor), static_cast<QWidget*>(&late)}) {
        EXPECT_TRUE(partOf<QWidget>(*window, "noticeLabel").isVisible());
        EXPECT_TRUE(partOf<QWidget>(*window, "closeButton").isEnabled());
        for (const char* locked : {"editorPane", "addButton", "deleteButton"})
            EXPECT_FALSE(partOf<QWidget>(*window, locked).isEnabled()) << locked;
    }
    editor.marginAnchorChanged(MarginAnchor::BottomLeft);
    editor.textColorChanged(Qt::red);
    editor.fontChanged(0);
    editor.deleteStampAction();
    late.addStampAction();
    EXPECT_EQ(text.marginAnchor(), MarginAnchor::None);
    EXPECT_EQ(text.font, PDFFont());
    EXPECT_EQ(told + added + removed, 0);

    editors.setEditorsEnabled(true);
    EXPECT_FALSE(partOf<QWidget>(editor, "noticeLabel").isVisible());
    EXPECT_TRUE(partOf<QWidget>(editor, "deleteButton").isEnabled());
    EXPECT_TRUE(partOf<QWidget>(late, "addButton").isEnabled());
}

TEST_F(StampEditorsTest, EditorsGoWithTheirStamps)
{
    // Removing the editor closes it at once, also with a field half edited, and leaves the others.
    auto& first = newStamp<TextStamp>(true);
    auto& other = newStamp<ImageStamp>(true);
    edit<ImageStampWindowController>(other);
    auto& editor = edit<TextStampWindowController>(first);
    const QPointer<QWidget> window(&editor);
    type(partOf<QWidget>(editor, "fontSizeSpinBox"), "1");
    type(partOf<QWidget>(editor, "fontsPopup"), "xyz");
    const PDFFont font = first.font;
    editors.removehandlers(first);
    EXPECT_FALSE(editor.isVisible());
    editor.marginAnchorChanged(MarginAnchor::BottomLeft);
    EXPECT_EQ(first.marginAnchor(), MarginAnchor::None);
    EXPECT_EQ(first.font, font);
    settle();
    EXPECT_FALSE(window);
    EXPECT_TRUE(editors.isOpen(other));
    editors.removehandlers(first); // the stamp has no editor any more

    // A new set of stamps deletes the old stamps. The editors of these do nothing then, and are deleted.
    auto& orphan = edit<TextStampWindowController>(first);
    const QPointer<QWidget> second(&orphan);
    const store::Record empty;
    number.setData(&empty);
    EXPECT_TRUE(number.stamps.empty());
    told = renamed = 0;
    orphan.marginAnchorChanged(MarginAnchor::BottomLeft);
    type(partOf<QWidget>(orphan, "numberFormatTextField"), "lost");
    orphan.refresh();
    orphan.deleteStampAction();
    EXPECT_EQ(told + renamed + removed, 0);
    editors.removeOrphans();
    EXPECT_TRUE(!second || !second->isVisible());
    settle();
    EXPECT_FALSE(second);
}

TEST_F(StampEditorsTest, AStampMayGoDuringItsEdit)
{
    auto& own = newStamp<ImageStamp>(true);
    auto& editor = edit<ImageStampWindowController>(own);
    const QPointer<QWidget> window(&editor);
    struct Clearing final : NumberingDelegate
    {
        explicit Clearing(StampEditors& of) : editors(of) {}
        void PropertyChanged(Numbering& changed) override
        {
            changed.stamps.clear();
            editors.removeOrphans();
        }
        StampEditors& editors;
    } clearing(editors);
    number.setDelegate(&clearing);
    type(partOf<QWidget>(editor, "stampImageWidthTextField"), "12");
    settle();
    EXPECT_FALSE(window);
    number.setDelegate(this);
}

TEST_F(StampEditorsTest, WindowsMayGoBeforeTheirStamps)
{
    // Editors are deleted with their parent window or with the StampEditors object.
    auto parent = std::make_unique<QWidget>();
    auto above = std::make_unique<StampEditors>(number, *this, panels, alerts, parent.get());
    const auto stamp = std::make_shared<TextStamp>();
    above->edit(stamp);
    EXPECT_EQ(parent->findChildren<StampEditorWindow*>().size(), 1);
    parent.reset();
    EXPECT_FALSE(above->isOpen(*stamp));
    above->removehandlers(*stamp);
    above->setEditorsEnabled(false);
    above->edit(stamp);
    above->edit(std::make_shared<ImageStamp>());
    above.reset();
    EXPECT_EQ(stamp.use_count(), 1);
}

} // namespace
} // namespace quillfern
