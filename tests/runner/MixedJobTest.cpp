// Jobs with picture stamps, started from the command line.

#include "runner/RunnerOptions.h"

#include "runner/ProgramFixture.h"
#include "stamps/ImageStamp.h"
#include "stamps/TextStamp.h"

namespace quillfern {
namespace {

class MixedJob : public ProgramFixture
{
  protected:
    MixedJob()
    {
        scratch.writePicture(u"opaque.png"_s, {80, 40}, QColor(200, 30, 30));
        scratch.writePicture(u"photo.jpg"_s, {80, 40}, QColor(200, 30, 30));
        scratch.writePicture(u"clear.png"_s, {80, 40}, QColor(200, 30, 30, 90));
    }

    /// The kinds and codings of a PDF's image objects, each once.
    QStringList imagesOf(const char* pdf) const
    {
        QStringList images;
        const QByteArray list = runTool("pdfimages -list", {at(pdf)}).out;
        QStringList lines = QString::fromLatin1(list).split(u'\n', Qt::SkipEmptyParts).mid(2);
        for (const QString& line : lines) {
            const QStringList fields = line.simplified().split(u' ');
            images.append(fields[2] + u' ' + fields[8] + u' ' + fields[10]);
        }
        images.removeDuplicates();
        return images;
    }
};

TEST_F(MixedJob, APictureIsOneObjectOfADocument)
{
    scratch.write(u"in/a.pdf"_s, numberedPdf(3));
    const Rows<const char*, QStringList> cases = {{"opaque.png", {u"image image"_s}},
                                                  {"clear.png", {u"image image"_s, u"smask image"_s}},
                                                  {"photo.jpg", {u"image jpeg"_s}}};
    for (const auto& [picture, images] : cases) {
        SCOPED_TRACE(picture);
        ASSERT_EQ(run("--output DIR/out DIR/in/a.pdf --image DIR/" + QByteArray(picture)).exitCode, 0);
        QStringList kinds;
        QStringList objects;
        for (const QString& image : imagesOf("out/a.pdf")) {
            kinds.append(image.section(u' ', 0, 1));
            objects.append(image.section(u' ', 2));
        }
        objects.removeDuplicates();
        EXPECT_EQ(kinds, images);
        EXPECT_EQ(objects.size(), 1);
        EXPECT_TRUE(qpdfAccepts(at("out/a.pdf")));
        // Drawn by another program, the page has the picture at the middle of the bottom.
        runTool("pdftoppm -r 72 -png -singlefile", {at("out/a.pdf"), at("shown")});
        const QImage shown(at("shown.png"));
        ASSERT_FALSE(shown.isNull());
        const QColor middle = shown.pixelColor(shown.width() / 2, shown.height() - 20);
        const bool isClear = QByteArray(picture) == "clear.png";
        EXPECT_NEAR(middle.red(), isClear ? 236 : 200, 4);
        EXPECT_NEAR(middle.green(), isClear ? 176 : 30, 4);
    }
}

TEST_F(MixedJob, PictureOptions)
{
    const auto stampOf = [&](const char* options) {
        Settings settings;
        const QByteArray start = "quillfern-run --output /o /f.pdf --image DIR/opaque.png ";
        static_cast<void>(parseRunnerOptions(line(start + options), settings));
        return std::dynamic_pointer_cast<ImageStamp>(settings.number->stamps.at(0));
    };
    const Rows<const char*, int, int> cases = {{"", 80, 40},
                                               {"--width 50", 50, 25},
                                               {"--height 10", 20, 10},
                                               {"--width 30 --height 7", 30, 7},
                                               {"--height 7 --width 30", 30, 7},
                                               {"--width 1", 1, 1}};
    for (const auto& [options, width, height] : cases) {
        const auto stamp = stampOf(options);
        EXPECT_EQ(stamp->stampImageWidth, width);
        EXPECT_EQ(stamp->stampImageHeight, height);
    }
    const auto stamp = stampOf("--opacity 40 --rotation -15 --under --symmetric --anchor TopLeft");
    EXPECT_EQ(stamp->stampImageOpacity, 40);
    EXPECT_EQ(stamp->stampImageRotation, -15);
    EXPECT_TRUE(stamp->isDrawUnderPDFContent());
    EXPECT_TRUE(stamp->isSymmetry());
    EXPECT_EQ(stamp->marginAnchor(), MarginAnchor::TopLeft);
    for (const char* wrong :
         {"--bold", "--width 0", "--rotation 1.5", "--text x --width 5", "--image /no/such/picture.png"})
        EXPECT_THROW(stampOf(wrong), WrongUse);
}

} // namespace
} // namespace quillfern
