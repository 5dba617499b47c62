#include "config/Numbering.h"
#include "config/Settings.h"
#include "platform/store/PropertyList.h"
#include "stamps/ImageStamp.h"
#include "stamps/TextStamp.h"
#include "support/Fakes.h"
#include "support/Tools.h"

#include <QDir>
#include <QImage>
#include <QRegularExpression>
#include <csignal>
#include <gtest/gtest.h>
#include <limits>
#include <sys/resource.h>
#include <sys/stat.h>

namespace quillfern {
namespace {

const QString name = QStringLiteral("job.qfprofile");

std::shared_ptr<TextStamp> oddStamp()
{
    auto stamp = std::make_shared<TextStamp>();
    stamp->setIsSelected(false);
    stamp->setLabel(QStringLiteral("Fu\u00dfnote \U0001F4C4"));
    stamp->setMarginAnchor(MarginAnchor::BottomRight);
    stamp->setIsDrawUnderPDFContent(true);
    stamp->setIsSymmetry(true);
    stamp->font.fontName = QStringLiteral("DejaVu Sans");
    stamp->font.fontSize = 10.123456789012345;
    stamp->font.fontID = -1;
    stamp->font.isStandard = true;
    stamp->font.fontColor = QColor(1, 2, 3, 4);
    stamp->isBold = stamp->isItalic = stamp->isUnderline = stamp->isEmbedFont = true;
    stamp->underlineStyle = UnderlineStyle::Strikethrough;
    stamp->number = {QStringLiteral("<{0}> & \"{1}\""), NumberType::RomanNumbersSmall, 6,
                     QStringLiteral(" ")};
    stamp->textOpacity = 40;
    stamp->outlineOpacity = 60;
    stamp->outlineWidth = 3;
    stamp->outlineColor = QColor(255, 128, 0);
    stamp->textRotation = -45;
    return stamp;
}

void fill(Numbering& number)
{
    number.setStartPage(2);
    number.setEndPage(99);
    number.setStartNumber(-3);
    number.setNumberSteps(5);
    number.setPageRange(PageRange::EvenPages);
    number.setMarginLeft(28.34645669291339);
    number.setMarginTop(0.1);
    number.setMarginRight(1e-7);
    number.setMarginBottom(12345.678);
    number.setIsContinuousNumbering(true);
    number.setHasLabel(true);
    number.setIsHighlightStamp(false);
    number.setIsLivePreview(true);
    number.setLabelPrefix(QStringLiteral("pre\tfix"));
    number.setMarginUnit(MarginUnit::Inches);
    number.setIsMarginInPercentage(true);
    number.setIsSymmetryPage(true);
    number.setIsBackupFile(true);
    number.setOutputFolder(QStringLiteral("/some/where"));
    number.stamps = {std::make_shared<TextStamp>(), oddStamp()};
}

TEST(Profile, GivesBackEveryFieldAndTheStampsInOrder)
{
    const Scratch scratch;
    QImage image(20, 10, QImage::Format_ARGB32);
    image.fill(QColor(10, 200, 30, 128));
    ASSERT_TRUE(image.save(scratch.path(QStringLiteral("seal.png"))));
    auto seal = std::make_shared<ImageStamp>();
    seal->loadPicture(asPath(scratch.path(QStringLiteral("seal.png"))));
    seal->stampImageOpacity = 70;
    seal->stampImageRotation = -30;
    seal->stampImageWidth = 44;
    seal->setLabel(QStringLiteral("Seal"));
    seal->setMarginAnchor(MarginAnchor::MiddleRight);
    Numbering saved;
    fill(saved);
    saved.stamps = {std::make_shared<TextStamp>(), seal, oddStamp()};
    ASSERT_TRUE(saved.save(asPath(scratch.path(name))));
    Numbering loaded;
    ASSERT_TRUE(loaded.load(asPath(scratch.path(name))));
    EXPECT_EQ(*loaded.getData(), *saved.getData());
    // Equal records prove little if fields are missing from both: one field of each kind is compared, too.
    EXPECT_EQ(loaded.marginBottom(), 12345.678);
    EXPECT_EQ(loaded.numberSteps(), 5);
    ASSERT_EQ(loaded.stamps.size(), 3U);
    auto* picture = dynamic_cast<ImageStamp*>(loaded.stamps[1].get());
    ASSERT_NE(picture, nullptr) << "the kinds have lost their order";
    EXPECT_EQ(picture->stampImageWidth, 44);
    EXPECT_EQ(picture->stampImageRotation, -30);
    EXPECT_EQ(picture->stampImage(), seal->stampImage());
    EXPECT_FALSE(picture->stampImage()->isEmpty());
    const auto* stamp = dynamic_cast<const TextStamp*>(loaded.stamps[2].get());
    ASSERT_NE(stamp, nullptr);
    EXPECT_EQ(stamp->number, oddStamp()->number);
    EXPECT_EQ(stamp->font, oddStamp()->font);
    EXPECT_EQ(stamp->label(), oddStamp()->label());
}

TEST(Profile, IsAnXmlPropertyListForOthers)
{
    const Scratch scratch;
    Numbering number;
    fill(number);
    ASSERT_TRUE(number.save(asPath(scratch.path(name))));
    EXPECT_TRUE(readFile(scratch.path(name)).startsWith("<?xml"));
    const auto result = runTool(
        QStringLiteral("python3"),
        {QStringLiteral("-c"),
         QStringLiteral("import plistlib,sys\nd=plistlib.load(open(sys.argv[1],'rb'))\n"
                        "print(list(d));print(d['marginLeft'],d['startNumber'],d['isBackupFile'],"
                        "d['Stamps'][1]['font']['fontColor'],repr(d['Stamps'][1]['paddingCharacter']))"),
         scratch.path(name)});
    EXPECT_EQ(result.out,
              "['endPage', 'hasLabel', 'isBackupFile', 'isContinuousNumbering', 'isMarginInPercentage', "
              "'isSymmetryPage', 'labelPrefix', 'marginLeft', 'marginTop', 'marginRight', 'marginBottom', "
              "'marginUnit', 'numberSteps', 'outputFolder', 'pageRange', 'startNumber', 'startPage', "
              "'isHighlightStamp', 'isLivePreview', 'Stamps']\n"
              "28.34645669291339 -3 True b'#04010203' ' '\n")
        << result.err.constData();
}

TEST(Profile, NumbersAreCutToThirtyTwoBits)
{
    const Scratch scratch;
    struct Case
    {
        std::int64_t set, loaded;
    };
    for (const Case& c : {Case{(std::int64_t{5} << 32) + 17, 17},
                          Case{std::int64_t{1} << 31, std::numeric_limits<std::int32_t>::min()}, Case{-1, -1},
                          Case{std::numeric_limits<std::int64_t>::max(), -1}}) {
        Numbering number;
        number.setStartPage(c.set);
        ASSERT_TRUE(number.save(asPath(scratch.path(name))));
        ASSERT_TRUE(number.load(asPath(scratch.path(name))));
        EXPECT_EQ(number.startPage(), c.loaded);
    }
}

TEST(Profile, AnAbsentTextCutsTheRecordShort)
{
    const Scratch scratch;
    Numbering number;
    fill(number);
    number.setLabelPrefix(std::nullopt);
    ASSERT_TRUE(number.save(asPath(scratch.path(name))));
    const store::Record record = store::readPropertyListFile(asPath(scratch.path(name)));
    EXPECT_EQ(record.entries().size(), 6U);
    EXPECT_FALSE(record.contains(QStringLiteral("Stamps")));
    ASSERT_TRUE(number.load(asPath(scratch.path(name))));
    EXPECT_TRUE(number.stamps.empty());
    EXPECT_EQ(number.numberSteps(), 0) << "a missing key gives zero, not the default";
}

TEST(Profile, AnAbsentValueDoesNotCostTheStampsAtTheNextSave)
{
    const Scratch scratch;
    Numbering whole;
    fill(whole);
    auto picture = std::make_shared<ImageStamp>();
    picture->setLabel(QStringLiteral("Seal"));
    whole.stamps = {oddStamp(), picture, oddStamp()};
    const QByteArray full = store::writePropertyList(*whole.getData());
    const auto without = [&](const char* pattern) {
        const QRegularExpression each(QString::fromLatin1(pattern),
                                      QRegularExpression::DotMatchesEverythingOption);
        QString text = QString::fromUtf8(full);
        EXPECT_TRUE(text.contains(each)) << pattern;
        return text.remove(each).toUtf8();
    };
    const QString text = QStringLiteral("<key>%1</key>\\s*<string>[^<]*</string>");
    const QString data = QStringLiteral("<key>%1</key>\\s*<data>[^<]*</data>");
    for (const QString& pattern :
         {text.arg(QStringLiteral("labelPrefix")), text.arg(QStringLiteral("outputFolder")),
          text.arg(QStringLiteral("label")), text.arg(QStringLiteral("paddingCharacter")),
          text.arg(QStringLiteral("numberFormat")), text.arg(QStringLiteral("fontName")),
          text.arg(QStringLiteral("stampImagePath")), data.arg(QStringLiteral("fontColor")),
          data.arg(QStringLiteral("outlineColor"))}) {
        SCOPED_TRACE(pattern.toStdString());
        const QByteArray cut = without(pattern.toUtf8().constData());
        Numbering number;
        ASSERT_TRUE(number.load(asPath(scratch.write(name, cut))));
        ASSERT_TRUE(number.save(asPath(scratch.path(name))));
        // Settings hold the same record.
        const store::Record read = store::readPropertyList(cut);
        store::Record settingsRecord;
        settingsRecord.set(QStringLiteral("number"), read);
        MemoryDefaults store;
        store.setValue(QStringLiteral("SETTINGS"), settingsRecord);
        Settings settings(&store);
        EXPECT_EQ(settings.getData()->record(QStringLiteral("number"))->entries().size(), 20U);

        Numbering again;
        ASSERT_TRUE(again.load(asPath(scratch.path(name))));
        EXPECT_EQ(again.getData()->entries().size(), 20U);
        ASSERT_EQ(again.stamps.size(), 3U);
        EXPECT_EQ(again.stamps[0]->getData()->entries().size(), 20U);
        EXPECT_EQ(again.stamps[1]->getData()->entries().size(), 11U);
        EXPECT_EQ(again.startNumber(), -3) << "the entries that are there count";
    }
}

TEST(Profile, UnusableFilesChangeNothing)
{
    const Scratch scratch;
    const QByteArray array = "<plist><array><string>x</string></array></plist>";
    const QByteArray deep = "<plist><dict><key>Stamps</key>" + QByteArray("<array>").repeated(50'000) +
                            QByteArray("</array>").repeated(50'000) + "</dict></plist>";
    const std::vector<QString> paths = {
        scratch.path(QStringLiteral("missing")),
        scratch.path(),
        scratch.write(QStringLiteral("empty"), ""),
        scratch.write(QStringLiteral("text"), "startPage=2"),
        scratch.write(QStringLiteral("array"), array),
        scratch.write(QStringLiteral("deep"), deep),
        scratch.write(QStringLiteral("nothing"), "<plist><dict/></plist>"),
        scratch.write(QStringLiteral("another"),
                      "<plist><dict><key>Label</key><string>x</string></dict></plist>"),
        scratch.write(QStringLiteral("half"), "<plist><dict><key>startPage</key><integer>9</integer>"),
    };
    for (const QString& path : paths) {
        Numbering number;
        fill(number);
        const auto before = number.getData();
        EXPECT_FALSE(number.load(asPath(path))) << path.toStdString();
        EXPECT_EQ(number.getData(), before) << path.toStdString();
        EXPECT_FALSE(number.isUpdating());
    }
}

TEST(Profile, ValuesOfTheWrongKindCountAsMissing)
{
    const Scratch scratch;
    Numbering number;
    fill(number);
    ASSERT_TRUE(number.load(asPath(scratch.write(
        name, "<plist><dict><key>startPage</key><string>7</string><key>marginLeft</key><array/>"
              "<key>numberSteps</key><real>2.9</real><key>labelPrefix</key><integer>1</integer>"
              "<key>hasLabel</key><integer>1</integer><key>endPage</key><date>2020-01-01T00:00:00Z</date>"
              "<key>Stamps</key><array><string>stamp</string><dict><key>label</key><string>neither "
              "kind</string></dict>"
              "<dict><key>font</key><string>no dictionary</string></dict></array></dict></plist>"))));
    EXPECT_EQ(number.startPage(), 0);
    EXPECT_EQ(number.marginLeft(), 0.0);
    EXPECT_EQ(number.numberSteps(), 2);
    EXPECT_EQ(number.labelPrefix(), QString());
    EXPECT_TRUE(number.hasLabel());
    EXPECT_EQ(number.endPage(), 0);
    EXPECT_EQ(number.stamps.size(), 1U) << "only the one with a font is a stamp";
}

TEST(Profile, ColoursOfTheOriginalPlatformAreReadAndOursWritten)
{
    const Scratch scratch;
    const QByteArray archived =
        "BAt0eXBlZHN0cmVhbYED6IQBQISEhAdOU0NvbG9yAISECE5TT2JqZWN0AIWEAWMBhARmZmZmAAEAAYY=";
    Numbering number;
    ASSERT_TRUE(number.load(asPath(
        scratch.write(name, "<plist><dict><key>labelPrefix</key><string/><key>outputFolder</key><string/"
                            "><key>Stamps</key><array><dict><key>font</key><dict>"
                            "<key>fontColor</key><data>" +
                                archived +
                                "</data><key>fontName</key><string>Helvetica</string></dict>"
                                "<key>outlineColor</key><data>YnBsaXN0MDA=</data>"
                                "<key>numberFormat</key><string>{0}</string>"
                                "<key>paddingCharacter</key><string>0</string>"
                                "<key>label</key><string>after</string></dict></array></dict></plist>"))));
    ASSERT_EQ(number.stamps.size(), 1U);
    const auto* stamp = dynamic_cast<const TextStamp*>(number.stamps[0].get());
    ASSERT_NE(stamp, nullptr);
    EXPECT_EQ(stamp->font.fontColor, QColor(0, 255, 0));
    EXPECT_EQ(stamp->outlineColor, QColor(Qt::black)) << "an archive that is not understood";
    EXPECT_EQ(stamp->label(), QStringLiteral("after"));
    ASSERT_TRUE(number.save(asPath(scratch.path(name))));
    EXPECT_TRUE(readFile(scratch.path(name)).contains(QByteArray("#FF00FF00").toBase64()));
}

TEST(Profile, HasThePermissionsThatTheUserGivesToFiles)
{
    const Scratch scratch;
    const QByteArray path = scratch.path(name).toUtf8();
    const mode_t mask = ::umask(022);
    EXPECT_TRUE(Numbering().save(asPath(scratch.path(name))));
    struct stat status = {};
    ASSERT_EQ(::stat(path.constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0644U) << "a profile is made to be passed on";
    ASSERT_EQ(::chmod(path.constData(), 0664), 0);
    EXPECT_TRUE(Numbering().save(asPath(scratch.path(name))));
    ASSERT_EQ(::stat(path.constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 07777U, 0664U);
    ::umask(mask);
}

TEST(Profile, AFailedSaveLeavesTheOldFile)
{
    const Scratch scratch;
    Numbering number;
    EXPECT_FALSE(number.save(asPath(scratch.path(QStringLiteral("no/such/folder.qfprofile")))));
    EXPECT_FALSE(number.save(asPath(scratch.path()))) << "a folder is no file";
    scratch.write(name, "old");
    // Stands for a full disk: no file may grow beyond a few bytes.
    std::signal(SIGXFSZ, SIG_IGN);
    rlimit before = {};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit small{100, before.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    EXPECT_FALSE(number.save(asPath(scratch.path(name))));
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &before), 0);
    EXPECT_EQ(readFile(scratch.path(name)), "old");
    EXPECT_EQ(QDir(scratch.path()).entryList(QDir::Files | QDir::Hidden), QStringList{name})
        << "something was left";
}

} // namespace
} // namespace quillfern
