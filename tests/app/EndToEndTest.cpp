// A complete session of a user: from a first start without settings to stamped files on the disk, and a
// second start.

#include "app/AppFixture.h"
#include "platform/store/PlistDefaultsStore.h"
#include "stamps/ImageStamp.h"
#include "support/TiffBuilder.h"

#include <QLabel>

namespace quillfern {
namespace {

class EndToEnd : public AppTest
{
  protected:
    /// The only open window of this kind beside the main one.
    static QWidget* editor(const char* name)
    {
        for (QWidget* window : QApplication::topLevelWidgets())
            if (window->isVisible() && window->objectName() == QLatin1String(name)) return window;
        ADD_FAILURE() << name << " is not to be seen";
        return nullptr;
    }
    QString out(const char* name) const { return outFolder() + u'/' + QString::fromUtf8(name); }
};

TEST_F(EndToEnd, FromNothingToStampedFilesAndBackTheNextDay)
{
    // A folder with files of different kinds.
    pdf("case/a.pdf", 3);
    pdf("case/more/d.PDF", 2);
    scratch.write(u"case/broken.pdf"_s, "this was a document once");
    scratch.write(u"case/notes.txt"_s, "no picture");
    const QImage white(scratch.writePicture(u"case/c.png"_s, {200, 280}));
    TiffBuilder(scratch.path(u"case/b.tif"_s)).page(white).page(white);
    const QString logo = scratch.writePicture(u"logo.png"_s, {40, 20}, Qt::red);

    auto settings = std::make_unique<store::PlistDefaultsStore>(folders);
    store = settings.get();
    start();
    press(window(), "inculdeSubfoldersBtn");
    fill({scratch.path(u"case"_s)});
    EXPECT_EQ(names(), words("a.pdf b.tif broken.pdf c.png d.PDF"));

    // A number at the foot, made in the text editor.
    press(window(), "textStampButton");
    QWidget* text = editor("TextStampWindow");
    ASSERT_NE(text, nullptr);
    type(partOf<QLineEdit>(*text, "numberFormatTextField"), "Sheet {0} of {1}");
    press(*text, "marginBottomMiddleButton");
    press(*text, "addButton");
    ASSERT_EQ(number().stamps.size(), 1U);
    EXPECT_FALSE(text->isVisible());

    // A logo at the top, made in the picture editor.
    press(window(), "imageStampButton");
    QWidget* picture = editor("ImageStampWindow");
    ASSERT_NE(picture, nullptr);
    panels.answers.append(QStringList{logo});
    press(*picture, "chooseButton");
    auto& width = partOf<QLineEdit>(*picture, "stampImageWidthTextField");
    waitFor([&] { return width.text() == "40"_L1; }, "the picture is not read");
    type(width, "20");
    press(*picture, "marginTopLeftButton");
    press(*picture, "addButton");
    ASSERT_EQ(number().stamps.size(), 2U);
    const auto* image = dynamic_cast<const ImageStamp*>(number().stamps[1].get());
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->stampImageHeight, 10) << "the proportions are kept";
    EXPECT_EQ(ui().stampsTableView->model()->rowCount(), 2);

    // The whole list is stamped.
    ui().settingTabView->setCurrentIndex(1);
    press(window(), "isContinuousNumbering");
    ui().settingTabView->setCurrentIndex(2);
    panels.answers.append(QStringList{outFolder()});
    press(window(), "outputFolderButton");
    press(window(), "setCurrentAsDefaultOutputFolderPathBtn");
    press(window(), "convertBtn");
    waitForEnd();
    EXPECT_EQ(partOf<QLabel>(*sheet(), "message").text(), u"Total 4 files processed successfully."_s);
    press(*sheet(), "viewLogBtn");
    EXPECT_EQ(desktop.opened.value(0), outFolder());
    const QByteArray log = readFile(desktop.opened.value(1));
    EXPECT_EQ(log.count("\"Completed\""), 4);
    EXPECT_EQ(log.count("\"No Pages\""), 1);
    press(*sheet(), "closeProcessBtn");

    // 3 pages, then 2, then 1, then 2.
    EXPECT_TRUE(qpdfAccepts(out("a.pdf")));
    EXPECT_TRUE(pdfText(out("a.pdf"), 3).contains(u"Sheet 3 of 8"_s));
    EXPECT_TRUE(pdfText(out("d.PDF"), 1).contains(u"Sheet 7 of 8"_s));
    EXPECT_TRUE(pdfText(out("d.PDF"), 2).contains(u"Body2"_s)) << "the page itself is still there";
    const std::vector<TiffPage> pages = readTiff(out("b.tif"));
    ASSERT_EQ(pages.size(), 2U);
    const QColor corner = pages[1].image.pixelColor(10, 5);
    EXPECT_GT(corner.red(), 230);
    EXPECT_LT(corner.green(), 40) << "the logo";
    EXPECT_EQ(readTiff(out("c.png")).size(), 1U);
    EXPECT_FALSE(QFile::exists(out("broken.pdf")));
    EXPECT_EQ(readFile(scratch.path(u"case/broken.pdf"_s)), "this was a document once");

    // The second start.
    quit();
    settings = std::make_unique<store::PlistDefaultsStore>(folders);
    store = settings.get();
    start();
    EXPECT_EQ(files().count(), 0);
    EXPECT_EQ(ui().outputFolderPath->text(), outFolder());
    EXPECT_TRUE(ui().isContinuousNumbering->isChecked());
    EXPECT_TRUE(ui().inculdeSubfoldersBtn->isChecked());
    ASSERT_EQ(number().stamps.size(), 2U);
    EXPECT_EQ(number().stamps[0]->description(), u"Numbers [Sheet {0} of {1}]"_s);
    EXPECT_EQ(number().stamps[1]->marginAnchor(), MarginAnchor::TopLeft);
    fill({scratch.path(u"case/c.png"_s)});
    ASSERT_TRUE(QFile::remove(out("c.png")));
    press(window(), "convertBtn");
    waitForEnd();
    EXPECT_EQ(readTiff(out("c.png")).size(), 1U) << "the picture came back with the settings";
    QTest::keyClick(sheet(), Qt::Key_Escape);
    quit();
}

} // namespace
} // namespace quillfern
