#include "dialogs/EditorFixture.h"
#include "dialogs/FieldFormatters.h"
#include "dialogs/ImageStampWindowController.h"
#include "dialogs/OpacityField.h"
#include "dialogs/PictureView.h"
#include "dialogs/RotationField.h"
#include "support/Tools.h"

#include <QProgressBar>
#include <QSlider>
#include <functional>

namespace quillfern {
namespace {

using Editor = ImageStampWindowController;

class ImageStampEditorTest : public EditorFixture
{
  protected:
    QString picture(const char* name, int width = 400, int height = 100) const
    {
        return scratch.writePicture(QString::fromLatin1(name), {width, height}, QColor(200, 0, 0, 128));
    }
    static bool isBusy(const Editor& editor)
    {
        return partOf<PictureView>(editor, "stampImageView").findChild<QProgressBar*>()->isVisible();
    }
    static void waitUntilRead(const Editor& editor)
    {
        ASSERT_TRUE(QTest::qWaitFor([&] { return !isBusy(editor); }, 20'000));
    }

    Scratch scratch;
};

TEST_F(ImageStampEditorTest, APictureIsChosenKeptAsTiffAndRemoved)
{
    auto& stamp = newStamp<ImageStamp>();
    auto& editor = edit<Editor>(stamp);
    auto& remove = partOf<QWidget>(editor, "removeImageButton");
    EXPECT_FALSE(remove.isEnabled());
    EXPECT_EQ(editor.windowTitle(), u"Image Stamp Properties []"_s);

    click(partOf<QWidget>(editor, "chooseButton")); // the user closes the panel
    ASSERT_EQ(panels.opened.size(), 1);
    EXPECT_EQ(panels.opened[0].message, u"Please Select Stamp Image (Only BMP,JPG,JPEG,PNG,GIF Files):"_s);
    EXPECT_EQ(panels.opened[0].types.join(u' '), u"bmp BMP jpg JPG jpeg JPEG png PNG gif GIF"_s);
    EXPECT_FALSE(panels.opened[0].folders || panels.opened[0].multiple || isBusy(editor));

    panels.answers = {{picture("seal.v2.jpg")}};
    click(partOf<QWidget>(editor, "chooseButton"));
    EXPECT_TRUE(isBusy(editor));
    EXPECT_EQ(told, 0);
    waitUntilRead(editor);
    EXPECT_EQ(told, 1);
    EXPECT_TRUE(stamp.stampImage()->startsWith("II*") || stamp.stampImage()->startsWith("MM"));
    EXPECT_EQ(stamp.stampImagePath, scratch.path(u"seal.v2.jpg"_s));
    EXPECT_EQ(stamp.stampImageWidth, 400);
    EXPECT_EQ(stamp.stampImageHeight, 100);
    EXPECT_TRUE(partOf<PictureView>(editor, "stampImageView").picture());
    EXPECT_TRUE(remove.isEnabled() && editor.isAspectRatio());
    EXPECT_EQ(editor.windowTitle(), u"Image Stamp Properties [seal.v2]"_s);
    type(partOf<QLineEdit>(editor, "labelTextField"), "Seal");
    EXPECT_EQ(editor.windowTitle(), u"Image Stamp Properties [Seal]"_s);
    EXPECT_EQ(told, 1); // the label is not part of the preview
    EXPECT_GT(renamed, 0);

    click(remove);
    EXPECT_TRUE(stamp.stampImage() && stamp.stampImage()->isEmpty() && stamp.stampImagePath->isEmpty());
    EXPECT_EQ(stamp.stampImageWidth + stamp.stampImageHeight, 0);
    EXPECT_FALSE(stamp.cacheImage());
    EXPECT_FALSE(partOf<PictureView>(editor, "stampImageView").picture());
    EXPECT_FALSE(remove.isEnabled());
    EXPECT_EQ(told, 2);
}

TEST_F(ImageStampEditorTest, AFileThatIsNoPictureChangesNothing)
{
    auto& stamp = newStamp<ImageStamp>();
    stamp.loadPicture(asPath(picture("good.png")));
    const auto before = stamp.getData();
    auto& editor = edit<Editor>(stamp);
    for (const QString& path : {scratch.write(u"bad.png"_s, "no picture"), scratch.path(u"gone.png"_s)}) {
        alerts.criticals.clear();
        editor.loadPicture(asPath(path));
        waitUntilRead(editor);
        EXPECT_EQ(alerts.criticals, QStringList(u"Unable to load selected image!"_s));
        EXPECT_EQ(stamp.getData(), before);
        EXPECT_EQ(told, 0);
    }
}

TEST_F(ImageStampEditorTest, APictureThatCouldNotBeSavedIsRefusedAtOnce)
{
    // The other stamp's bytes are no picture, but it keeps them, and they would have to be saved.
    auto other = std::make_shared<ImageStamp>();
    const qint64 size = LoadedPicture::readFor(asPath(picture("other.png"))).tiff.size();
    EXPECT_THROW(other->setStampImage(QByteArray(Numbering::mostPictureBytes - size + 1, '\0')), Failure);
    number.stamps.push_back(other);
    auto& stamp = newStamp<ImageStamp>();
    auto& editor = edit<Editor>(stamp);
    editor.loadPicture(asPath(picture("seal.png")));
    waitUntilRead(editor);
    ASSERT_EQ(alerts.criticals.size(), 1);
    EXPECT_TRUE(alerts.criticals[0].startsWith(u"Unable to load selected image!\n\nThe pictures"_s))
        << alerts.criticals[0].toStdString();
    EXPECT_FALSE(stamp.cacheImage());
    number.stamps.clear(); // there is room again
    editor.loadPicture(asPath(picture("seal.png")));
    waitUntilRead(editor);
    EXPECT_EQ(alerts.criticals.size(), 1);
    EXPECT_TRUE(stamp.cacheImage());
}

TEST_F(ImageStampEditorTest, TakesOnlyPictureFilesThatAreDropped)
{
    const QUrl good = QUrl::fromLocalFile(picture("drop.PNG"));
    const Rows<QList<QUrl>, bool> rows = {{{good}, true},
                                          {{good, good}, false},
                                          {{QUrl::fromLocalFile(scratch.path(u"a.pdf"_s))}, false},
                                          {{QUrl::fromLocalFile(scratch.path(u"a.Png"_s))}, false},
                                          {{QUrl(u"https://example.org/a.png"_s)}, false},
                                          {QList<QUrl>(), false}};
    for (const auto& [urls, isTaken] : rows) {
        auto& stamp = newStamp<ImageStamp>();
        auto& editor = edit<Editor>(stamp);
        EXPECT_EQ(dropOn(partOf<PictureView>(editor, "stampImageView"), urls), isTaken);
        waitUntilRead(editor);
        EXPECT_EQ(stamp.stampImageWidth, isTaken ? 400 : 0);
    }
}

TEST_F(ImageStampEditorTest, TheAspectLockCutsToWholePoints)
{
    const char* width = "stampImageWidthTextField";
    const char* height = "stampImageHeightTextField";
    const Rows<int, int, bool, const char*, const char*, std::int64_t, std::int64_t> rows = {
        {400, 100, true, width, "200", 200, 50},
        {400, 100, true, width, "203", 203, 50},
        {400, 100, true, height, "33", 132, 33},
        {300, 70, true, height, "10", 42, 10},
        {400, 100, true, width, "", 400, 100}, // nothing is typed
        {400, 100, false, width, "200", 200, 100},
        {1, 400, true, width, "2147483647", 2147483647, 2147483647},
        {400, 100, true, width, "9999999999", 2147483647, 536870911},
    };
    for (const auto& [pictureWidth, pictureHeight, isLocked, field, keys, expectedWidth, expectedHeight] :
         rows) {
        auto& stamp = newStamp<ImageStamp>();
        stamp.loadPicture(asPath(picture("a.png", pictureWidth, pictureHeight)));
        auto& editor = edit<Editor>(stamp);
        EXPECT_TRUE(editor.isAspectRatio());
        if (!isLocked) click(partOf<QWidget>(editor, "aspectRatioCheckbox"));
        type(partOf<QWidget>(editor, field), keys);
        EXPECT_EQ(stamp.stampImageWidth, expectedWidth) << keys;
        EXPECT_EQ(stamp.stampImageHeight, expectedHeight) << keys;
        QTest::keyClick(&partOf<QWidget>(editor, field), Qt::Key_Return);
        EXPECT_EQ(partOf<NumberField>(editor, width).integerValue(), expectedWidth);
        EXPECT_EQ(partOf<NumberField>(editor, height).integerValue(), expectedHeight);
    }
    // A field that the user has emptied to type another number stays empty.
    auto& other = newStamp<ImageStamp>();
    auto& field = partOf<QLineEdit>(edit<Editor>(other), width);
    type(field, "7");
    QTest::keyClick(&field, Qt::Key_Backspace);
    editors.refreshEditors();
    QTest::keyClicks(&field, u"12"_s);
    EXPECT_EQ(field.text(), u"12"_s);

    auto& bare = newStamp<ImageStamp>(); // no picture, no proportions
    auto& editor = edit<Editor>(bare);
    editor.setIsAspectRatio(true);
    type(partOf<QWidget>(editor, width), "20");
    EXPECT_EQ(bare.stampImageWidth, 20);
    EXPECT_EQ(bare.stampImageHeight, 0);
}

TEST_F(ImageStampEditorTest, TheOtherControlsWriteTheirFields)
{
    auto& stamp = newStamp<ImageStamp>();
    auto& editor = edit<Editor>(stamp);
    QTest::keyClick(partOf<QWidget>(editor, "imageOpacityField").findChild<QSlider*>(), Qt::Key_PageDown);
    EXPECT_EQ(stamp.stampImageOpacity, 90);
    EXPECT_EQ(partOf<QLabel>(editor, "imageOpacityLabel").text(), u"90%"_s);
    type(partOf<QWidget>(editor, "rotationSpinBox"), "45.7"); // whole degrees: the point is refused
    EXPECT_EQ(stamp.stampImageRotation, 45);
    click(partOf<QWidget>(editor, "marginTopRightButton"));
    EXPECT_EQ(stamp.marginAnchor(), MarginAnchor::TopRight);
    EXPECT_GE(told, 3);
}

TEST_F(ImageStampEditorTest, StrangeValuesSurviveUntilTheyAreEdited)
{
    auto& stamp = newStamp<ImageStamp>(true);
    ASSERT_ANY_THROW(stamp.setStampImage(QByteArray("II*damaged")));
    stamp.stampImageWidth = 1'000'000'000;
    stamp.stampImageHeight = -7;
    stamp.stampImageOpacity = 250;
    stamp.stampImageRotation = -1'000'000;
    stamp.setMarginAnchor(MarginAnchor{-1});
    stamp.setLabel(std::nullopt);
    stamp.stampImagePath = std::nullopt;
    const auto before = stamp.getData();
    auto& editor = edit<Editor>(stamp);
    for (int i = 0; i < 25; ++i)
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    EXPECT_EQ(stamp.getData(), before);
    EXPECT_EQ(stamp.stampImageHeight, -7);
    EXPECT_EQ(told + renamed, 0);
    EXPECT_TRUE(partOf<QWidget>(editor, "removeImageButton").isEnabled());
}

TEST_F(ImageStampEditorTest, APictureBeingReadMayLoseItsWindow)
{
    const QString path = picture("large.png", 3000, 2000);
    // The width is the stamp's afterwards; -1 when it is gone.
    const Rows<const char*, std::function<void(Editor&)>, std::int64_t> rows = {
        {"read to the end", [](Editor&) {}, 3000},
        {"window closed", [](Editor& e) { e.close(); }, 3000},
        {"removed meanwhile", [](Editor& e) { e.removeImageAction(); }, 0},
        {"another chosen meanwhile", [&](Editor& e) { e.loadPicture(asPath(picture("small.png", 30, 20))); },
         30},
        {"stamp deleted", [&](Editor& e) { e.deleteStampAction(); }, -1},
        {"list replaced", [&](Editor&) { number.stamps.clear(); }, -1},
    };
    for (const auto& [what, end, width] : rows) {
        SCOPED_TRACE(what);
        auto& stamp = newStamp<ImageStamp>(true);
        auto& editor = edit<Editor>(stamp);
        editor.loadPicture(asPath(path));
        end(editor);
        settle();
        if (width < 0) continue;
        ASSERT_TRUE(QTest::qWaitFor([&] { return stamp.stampImageWidth == width; }, 20'000));
        number.stamps.clear();
    }
    QTest::qWait(50);
    EXPECT_TRUE(alerts.criticals.isEmpty());
}

TEST_F(ImageStampEditorTest, APictureThatComesDuringAJobWaitsForItsEnd)
{
    auto& stamp = newStamp<ImageStamp>(true);
    auto& editor = edit<Editor>(stamp);
    editor.loadPicture(asPath(picture("a.png")));
    editors.setEditorsEnabled(false);
    waitUntilRead(editor);
    EXPECT_EQ(stamp.stampImageWidth, 0);
    editors.setEditorsEnabled(true);
    EXPECT_EQ(stamp.stampImageWidth, 400);
}

} // namespace
} // namespace quillfern
