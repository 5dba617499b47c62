// The options of a job on the command line, with real documents.

#include "runner/ProgramFixture.h"

namespace quillfern {
namespace {

class JobFlags : public ProgramFixture
{
  protected:
    JobFlags() { lock(scratch.write(u"in/plain.pdf"_s, numberedPdf(5)), "in/locked.pdf"); }

    void lock(const QString& plain, const char* name)
    {
        runTool("qpdf --encrypt user owner 256 --", {plain, at(name)});
    }
};

TEST_F(JobFlags, PasswordsOpenFilesAndCountTheirPages)
{
    const QByteArray job =
        "--output DIR/out --text N{0}/{1} --continuous DIR/in/locked.pdf DIR/in/plain.pdf ";
    ToolResult result = run(job);
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.out.contains("The document needs a password.")) << result.out.toStdString();
    result = run(job + "--password wrong");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.out.contains("another password than the one given")) << result.out.toStdString();

    scratch.write(u"secret"_s, "\xEF\xBB\xBFowner\r\nsecond line");
    for (const auto& [option, input] : {std::pair<QByteArray, QByteArray>("--password owner", ""),
                                        {"--password-file DIR/secret", ""},
                                        {"--password-file -", "owner\n"}}) {
        result = run(job + option + " --unlock", input);
        EXPECT_EQ(result.exitCode, 0) << option.toStdString() << result.err.toStdString();
        EXPECT_TRUE(pdfText(out("locked.pdf"), 5).contains(u"N5/10"_s));
        EXPECT_TRUE(pdfText(out("plain.pdf"), 1).contains(u"N6/10"_s)) << "the total counts both";
    }
    result = run(job + "--password user --unlock");
    EXPECT_EQ(result.exitCode, 1);
    EXPECT_TRUE(result.out.contains("Failed")) << result.out.toStdString();
    EXPECT_FALSE(QFile::exists(out("locked.pdf")));
}

TEST_F(JobFlags, TheStandardInputIsReadOnce)
{
    for (const QByteArray order : {"--list - --password-file -", "--password-file - --list -"}) {
        const ToolResult result = run("--output DIR/out --text x " + order, "owner\n");
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_TRUE(result.err.contains("can be read once")) << result.err.toStdString();
    }
}

TEST_F(JobFlags, AProfileKeepsOptionsButNoPassword)
{
    ASSERT_EQ(run("--save-profile DIR/p.qfprofile --text {file}:{0} --fill-in --page-list 2-3,5 --pages odd "
                  "--keep-other-pages --password owner")
                  .exitCode,
              0);
    const QByteArray profile = readFile(at("p.qfprofile"));
    EXPECT_TRUE(profile.contains("2-3,5") && profile.contains("usePasswords"));
    EXPECT_FALSE(profile.contains("owner"));
    const QByteArray again = "--profile DIR/p.qfprofile --output DIR/out DIR/in/plain.pdf ";
    ASSERT_EQ(run(again).exitCode, 0);
    const auto pages = pdfWords(out("plain.pdf"));
    for (const int page : {1, 2, 4})
        EXPECT_EQ(pages.at(static_cast<std::size_t>(page - 1)).words.size(), 1U) << page;
    EXPECT_TRUE(pages.at(2).contains(u"plain.pdf:1"_s));
    EXPECT_TRUE(pages.at(4).contains(u"plain.pdf:2"_s));
    ASSERT_EQ(run(again + "--no-page-list --no-keep-other-pages").exitCode, 0);
    EXPECT_TRUE(pdfWords(out("plain.pdf")).at(0).contains(u"plain.pdf:1"_s));
    EXPECT_TRUE(pdfWords(out("plain.pdf")).at(1).words.empty());

    QByteArray damaged = profile;
    damaged.replace("2-3,5", "2-x");
    scratch.write(u"p.qfprofile"_s, damaged);
    const ToolResult result = run(again);
    EXPECT_EQ(result.exitCode, 2);
    EXPECT_TRUE(result.err.contains("character 3")) << result.err.toStdString();
}

TEST_F(JobFlags, WrongValuesAreRefused)
{
    const Rows<const char*, const char*> cases = {
        {"--page-list 1,4-2", "--page-list: The range that ends at character 5 of the pages \"1,4-2\""},
        {"--page-list=", "--page-list takes pages and ranges"},
        {"--password=", "--password gives no password"},
        {"--password-file DIR/none", "--password-file: "},
        {"--image DIR/no.png --fill-in", "no.png"},
    };
    for (const auto& [options, said] : cases) {
        const ToolResult result = run("--output DIR/out --text x DIR/in/plain.pdf " + QByteArray(options));
        EXPECT_EQ(result.exitCode, 2) << options;
        EXPECT_TRUE(result.err.contains(said)) << result.err.toStdString();
    }
    EXPECT_TRUE(QDir(at("out")).isEmpty());
}

TEST_F(JobFlags, ThePreviewShowsWhatTheJobWill)
{
    // A dark page whose visible part is light, in a file that needs a password.
    const QByteArray fill = "0 g 0 0 400 300 re f 1 g 100 100 200 100 re f";
    const QString plain =
        scratch.write(u"crop.pdf"_s, simplePdf({{fill, "/MediaBox[0 0 400 300]/CropBox[100 100 300 200]"}}));
    lock(plain, "crop-locked.pdf");
    const auto picture = [&](const QByteArray& options) {
        EXPECT_EQ(run("--preview DIR/page.png --text x --anchor MiddleMiddle " + options).exitCode, 0);
        return QImage(at("page.png"));
    };
    EXPECT_EQ(picture("DIR/crop.pdf").size(), QSize(400, 300));
    const QImage visible = picture("--visible-page DIR/crop.pdf");
    EXPECT_EQ(visible.size(), QSize(200, 100));
    EXPECT_GT(qGray(visible.pixel(3, 3)), 200);
    EXPECT_EQ(picture("--visible-page --password user DIR/crop-locked.pdf"), visible);
    const QImage without = picture("--page-list 2 DIR/crop.pdf");
    EXPECT_NE(without, picture("DIR/crop.pdf")) << "a page that is not in the list has no stamps";
}

} // namespace
} // namespace quillfern
