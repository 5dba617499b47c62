// A complete session of a user: from a first start without settings to stamped files on the disk, and a
// second start.

#include "app/AppFixture.h"
#include "platform/store/PlistDefaultsStore.h"
#include "stamps/ImageStamp.h"
#include "stamps/TextStamp.h"
#include "support/TiffBuilder.h"

#include <QComboBox>
#include <QImage>
#include <QLabel>
#include <QPushButton>

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
    void convert()
    {
        QTest::mouseClick(ui().convertBtn, Qt::LeftButton);
        ASSERT_NE(sheet(), nullptr);
        auto* close = sheet()->findChild<QPushButton*>(QStringLiteral("closeProcessBtn"));
        waitFor([close] { return close->isEnabled(); }, "the job does not end");
    }
};

TEST_F(EndToEnd, FromNothingToStampedFilesAndBackTheNextDay)
{
    // A folder with files of different kinds.
    pdf("case/a.pdf", 3);
    pdf("case/more/d.PDF", 2);
    scratch.write(QStringLiteral("case/broken.pdf"), "this was a document once");
    scratch.write(QStringLiteral("case/notes.txt"), "no picture");
    QImage white(200, 280, QImage::Format_RGB32);
    white.fill(Qt::white);
    TiffBuilder(scratch.path(QStringLiteral("case/b.tif"))).page(white).page(white);
    ASSERT_TRUE(white.save(scratch.path(QStringLiteral("case/c.png"))));
    QImage logo(40, 20, QImage::Format_RGB32);
    logo.fill(Qt::red);
    ASSERT_TRUE(logo.save(scratch.path(QStringLiteral("logo.png"))));

    auto settings = std::make_unique<store::PlistDefaultsStore>(folders);
    store = settings.get();
    start();
    press(window(), "inculdeSubfoldersBtn");
    fill({scratch.path(QStringLiteral("case"))});
    EXPECT_EQ(names(), words("a.pdf b.tif broken.pdf c.png d.PDF"));

    // A number at the foot, made in the text editor.
    press(window(), "textStampButton");
    QWidget* text = editor("TextStampWindow");
    ASSERT_NE(text, nullptr);
    type(*text->findChild<QLineEdit*>(QStringLiteral("numberFormatTextField")), "Sheet {0} of {1}");
    press(*text, "marginBottomMiddleButton");
    press(*text, "addButton");
    ASSERT_EQ(number().stamps.size(), 1U);
    EXPECT_FALSE(text->isVisible());

    // A logo at the top, made in the picture editor.
    press(window(), "imageStampButton");
    QWidget* picture = editor("ImageStampWindow");
    ASSERT_NE(picture, nullptr);
    panels.answers.append(QStringList{scratch.path(QStringLiteral("logo.png"))});
    press(*picture, "chooseButton");
    auto* width = picture->findChild<QLineEdit*>(QStringLiteral("stampImageWidthTextField"));
    waitFor([&] { return width->text() == QLatin1String("40"); }, "the picture is not read");
    type(*width, "20");
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
    convert();
    EXPECT_EQ(sheet()->findChild<QLabel*>(QStringLiteral("message"))->text(),
              QStringLiteral("Total 4 files processed successfully."));
    press(*sheet(), "viewLogBtn");
    EXPECT_EQ(desktop.opened.value(0), outFolder());
    const QByteArray log = readFile(desktop.opened.value(1));
    EXPECT_EQ(log.count("\"Completed\""), 4);
    EXPECT_EQ(log.count("\"No Pages\""), 1);
    press(*sheet(), "closeProcessBtn");

    // 3 pages, then 2, then 1, then 2.
    EXPECT_TRUE(qpdfAccepts(out("a.pdf")));
    EXPECT_TRUE(pdfText(out("a.pdf"), 3).contains(QStringLiteral("Sheet 3 of 8")));
    EXPECT_TRUE(pdfText(out("d.PDF"), 1).contains(QStringLiteral("Sheet 7 of 8")));
    EXPECT_TRUE(pdfText(out("d.PDF"), 2).contains(QStringLiteral("Body2")))
        << "the page itself is still there";
    const std::vector<TiffPage> pages = readTiff(out("b.tif"));
    ASSERT_EQ(pages.size(), 2U);
    const QColor corner = pages[1].image.pixelColor(10, 5);
    EXPECT_GT(corner.red(), 230);
    EXPECT_LT(corner.green(), 40) << "the logo";
    EXPECT_EQ(readTiff(out("c.png")).size(), 1U);
    EXPECT_FALSE(QFile::exists(out("broken.pdf")));
    EXPECT_EQ(readFile(scratch.path(QStringLiteral("case/broken.pdf"))), "this was a document once");

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
    EXPECT_EQ(number().stamps[0]->description(), QStringLiteral("Numbers [Sheet {0} of {1}]"));
    EXPECT_EQ(number().stamps[1]->marginAnchor(), MarginAnchor::TopLeft);
    fill({scratch.path(QStringLiteral("case/c.png"))});
    ASSERT_TRUE(QFile::remove(out("c.png")));
    convert();
    EXPECT_EQ(readTiff(out("c.png")).size(), 1U) << "the picture came back with the settings";
    QTest::keyClick(sheet(), Qt::Key_Escape);
    quit();
}

} // namespace
} // namespace quillfern
