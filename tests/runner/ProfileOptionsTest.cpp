#include "runner/Runner.h"

#include "config/PageArea.h"
#include "runner/ProgramFixture.h"
#include "stamps/TextStamp.h"
#include "support/Fakes.h"

namespace quillfern {
namespace {

using testing::HasSubstr;

class ProfileOptions : public ProgramFixture
{
  protected:
    /// Runs a command line; what was printed is in `printed`.
    int run(const QStringList& arguments)
    {
        printed.clear();
        QTextStream out(&printed);
        Runner runner({clock, folders, mainThread, desktop}, out, out, false);
        const int status = runner.run(QStringList{u"quillfern-run"_s} + arguments, [] { return false; });
        out.flush();
        return status;
    }

    /// Reads a command line that asks for no job.
    Settings parsed(const QStringList& arguments)
    {
        Settings settings;
        static_cast<void>(parseRunnerOptions(
            QStringList{u"quillfern-run"_s, u"--save-profile"_s, at("unused")} + arguments, settings));
        return settings;
    }

    /// A profile with every option that the runner can override.
    QString saved()
    {
        const QString path = at("p.qfprofile");
        EXPECT_EQ(
            run(line(
                "--text Saved{0} --bold --start-page 2 --end-page 9 --start-number 5 --step 3 --pages odd "
                "--continuous --margins 10,10,10,10mm --backup --save-profile DIR/p.qfprofile")),
            Runner::AllCreated)
            << printed.toStdString();
        return path;
    }

    FakeClock clock;
    FakeFolders folders{at("support")};
    SameThread mainThread;
    FakeDesktop desktop;
    QString printed;
};

TEST_F(ProfileOptions, WhatIsSavedIsWhatIsRead)
{
    saved();
    const Settings settings = parsed(line("--profile DIR/p.qfprofile"));
    const Numbering& number = *settings.number;
    EXPECT_EQ(number.startPage(), 2);
    EXPECT_EQ(number.endPage(), 9);
    EXPECT_EQ(number.startNumber(), 5);
    EXPECT_EQ(number.numberSteps(), 3);
    EXPECT_EQ(number.pageRange(), PageRange::OddPages);
    EXPECT_TRUE(number.isContinuousNumbering());
    EXPECT_TRUE(number.isBackupFile());
    EXPECT_EQ(number.marginUnit(), MarginUnit::Millimetres);
    EXPECT_EQ(number.marginTop(), 10);
    ASSERT_EQ(number.stamps.size(), 1U);
    EXPECT_EQ(dynamic_cast<TextStamp&>(*number.stamps[0]).number.numberFormat, u"Saved{0}"_s);
}

TEST_F(ProfileOptions, OptionsAfterAProfileOverrideIt)
{
    saved();
    const Settings settings =
        parsed(line("--profile DIR/p.qfprofile --start-page 1 --pages all --no-continuous --no-backup "
                    "--margins 1,2,3,4pt --text More --opacity 50"));
    const Numbering& number = *settings.number;
    EXPECT_EQ(number.startPage(), 1);
    EXPECT_EQ(number.pageRange(), PageRange::AllPages);
    EXPECT_FALSE(number.isContinuousNumbering());
    EXPECT_FALSE(number.isBackupFile());
    EXPECT_EQ(number.marginUnit(), MarginUnit::Points);
    EXPECT_EQ(number.marginRight(), 3);
    EXPECT_EQ(number.startNumber(), 5) << "what was not overridden stays";
    ASSERT_EQ(number.stamps.size(), 2U);
    EXPECT_EQ(dynamic_cast<TextStamp&>(*number.stamps[0]).textOpacity, 100)
        << "a stamp of the profile was changed";
    EXPECT_EQ(dynamic_cast<TextStamp&>(*number.stamps[1]).textOpacity, 50);
}

TEST_F(ProfileOptions, GivenMarginsAreLengthsWhateverTheProfileHad)
{
    Numbering percent;
    percent.setIsMarginInPercentage(true);
    percent.setMarginLeft(50);
    ASSERT_TRUE(percent.save(asPath(at("percent"))));
    const Settings settings = parsed(line("--profile DIR/percent --text A --margins 36,36,36,36pt"));
    EXPECT_EQ(marginRect(settings.number->fields(), {612, 792}), QRectF(36, 36, 540, 720));
}

TEST_F(ProfileOptions, CommandLinesThatCannotBeFollowed)
{
    saved();
    scratch.write(u"bad"_s, "<plist><array/></plist>");
    scratch.write(u"another"_s, "<plist><dict><key>Label</key><true/></dict></plist>");
    Numbering empty;
    ASSERT_TRUE(empty.save(asPath(at("empty"))));
    const QString pdf = scratch.write(u"in.pdf"_s, numberedPdf(1));
    scratch.write(u"page.png"_s, "a picture");
    const Rows<const char*, const char*> cases = {
        {"--profile DIR/none --output DIR DIR/in.pdf", "cannot be read"},
        {"--profile DIR/bad --output DIR DIR/in.pdf", "not a dictionary"},
        {"--profile DIR/another --output DIR DIR/in.pdf", "holds no configuration"},
        {"--profile DIR/empty --output DIR DIR/in.pdf", "no stamp"},
        {"--text A --profile DIR/p.qfprofile --output DIR DIR/in.pdf", "name it first"},
        {"--start-number 4 --profile DIR/p.qfprofile --output DIR DIR/in.pdf", "name it first"},
        {"--profile DIR/p.qfprofile --opacity 50 --output DIR DIR/in.pdf", "begin one with --text"},
        {"--profile DIR/p.qfprofile DIR/in.pdf", "no output folder"},
        {"--profile DIR/p.qfprofile --output DIR", "no files"},
        {"--text A --preview-size 600 --preview DIR/x.png", "--preview-size takes"},
        {"--text A --preview-size 0x5 --preview DIR/x.png", "--preview-size takes"},
        {"--text A --preview DIR/x.png DIR/missing.pdf", "there is no file"},
        {"--text A --preview DIR/in.pdf", "would overwrite"},
        {"--text A --save-profile DIR/in.pdf", "would overwrite"},
        {"--text A --output DIR --export DIR/in.pdf DIR/in.pdf", "would overwrite"},
        {"--text A --preview DIR/page.png DIR/page.png", "which is to be stamped"},
    };
    for (const auto& [arguments, message] : cases) {
        EXPECT_EQ(run(line(arguments)), Runner::CommandNotFollowed) << arguments;
        EXPECT_THAT(printed.toStdString(), HasSubstr(message)) << arguments;
    }
    EXPECT_FALSE(QFileInfo::exists(at("x.png")));
}

TEST_F(ProfileOptions, AJobRunsFromAProfileAndCanSaveItsOwn)
{
    saved();
    scratch.write(u"in/a.pdf"_s, numberedPdf(3));
    scratch.write(u"out/keep"_s, "");
    ASSERT_EQ(run(line("--profile DIR/p.qfprofile --pages all --start-page 1 --text And{1} --save-profile "
                       "DIR/q --output "
                       "DIR/out DIR/in/a.pdf")),
              Runner::AllCreated)
        << printed.toStdString();
    EXPECT_THAT(printed.toStdString(), HasSubstr("p.qfprofile\" turns the backup of files"));
    const QString text = pdfText(at("out/a.pdf"), 2);
    EXPECT_THAT(text.toStdString(), HasSubstr("Saved8"));
    EXPECT_EQ(parsed(line("--profile DIR/q")).number->stamps.size(), 2U);
    for (const char* const choice : {"--backup", "--no-backup"}) {
        run(line("--profile DIR/p.qfprofile --output DIR/out DIR/in/a.pdf") +
            QStringList{QString::fromLatin1(choice)});
        EXPECT_EQ(printed.indexOf(u"backup"_s), -1) << "the command line says it itself";
    }
}

TEST_F(ProfileOptions, PreviewsAreDrawnAndNothingIsStamped)
{
    scratch.write(u"a.pdf"_s, simplePdf({{"0 1 0 rg 0 0 612 792 re f"}}));
    scratch.write(u"locked.pdf"_s, "no document");
    const Rows<const char*, QSize, QColor, bool> cases = {
        {"--preview DIR/p.png", {600, 850}, Qt::white, false},
        {"--preview DIR/p.png --preview-size 300x400", {300, 400}, Qt::white, false},
        {"--preview DIR/p.png DIR/a.pdf", {600, 776}, Qt::green, false},
        {"--preview DIR/p.png --preview-size 306x9999 DIR/a.pdf", {306, 396}, Qt::green, false},
        {"--preview DIR/p.png DIR/locked.pdf", {600, 850}, Qt::white, true},
    };
    for (const auto& [arguments, size, middle, isToldOf] : cases) {
        EXPECT_EQ(run(line("--text Number --font-size 40") + line(arguments)),
                  isToldOf ? Runner::SomeNotCreated : Runner::AllCreated)
            << printed.toStdString();
        EXPECT_EQ(printed.contains(u"cannot be shown"_s), isToldOf) << printed.toStdString();
        const QImage image(at("p.png"));
        ASSERT_EQ(image.size(), size) << arguments;
        EXPECT_EQ(image.pixelColor(image.rect().center()), middle) << arguments;
        int dark = 0;
        for (int x = 0; x < image.width(); ++x)
            for (int y = image.height() * 9 / 10; y < image.height() - 3; ++y)
                dark += image.pixelColor(x, y).value() < 100 ? 1 : 0;
        EXPECT_GT(dark, 150) << arguments << ": no stamp is seen";
    }
    EXPECT_EQ(run(line("--text A --preview DIR/no/such/folder.png")), Runner::SomeNotCreated);
    EXPECT_EQ(run(line("--text A --save-profile DIR/no/such/p")), Runner::SomeNotCreated);
    EXPECT_TRUE(desktop.opened.isEmpty());
}

} // namespace
} // namespace quillfern
