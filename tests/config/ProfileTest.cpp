#include "config/Numbering.h"
#include "config/Settings.h"
#include "platform/store/PropertyList.h"
#include "stamps/ImageStamp.h"
#include "stamps/TextStamp.h"
#include "support/Fakes.h"
#include "support/Records.h"
#include "support/Tools.h"

#include <QRegularExpression>
#include <limits>

namespace quillfern {
namespace {

const QString name = u"job.qfprofile"_s;

std::shared_ptr<TextStamp> oddStamp()
{
    auto stamp = std::make_shared<TextStamp>();
    stamp->setIsSelected(false);
    stamp->setLabel(u"Fu\u00dfnote \U0001F4C4"_s);
    stamp->setMarginAnchor(MarginAnchor::BottomRight);
    stamp->setIsDrawUnderPDFContent(true);
    stamp->setIsSymmetry(true);
    stamp->font.fontName = u"DejaVu Sans"_s;
    stamp->font.fontSize = 10.123456789012345;
    stamp->font.fontID = -1;
    stamp->font.isStandard = true;
    stamp->font.fontColor = QColor(1, 2, 3, 4);
    stamp->isBold = stamp->isItalic = stamp->isUnderline = stamp->isEmbedFont = true;
    stamp->underlineStyle = UnderlineStyle::Strikethrough;
    stamp->number = {u"<{0}> & \"{1}\""_s, NumberType::RomanNumbersSmall, 6, u" "_s};
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
    number.setLabelPrefix(u"pre\tfix"_s);
    number.setMarginUnit(MarginUnit::Inches);
    number.setIsMarginInPercentage(true);
    number.setIsSymmetryPage(true);
    number.setIsBackupFile(true);
    number.setOutputFolder(u"/some/where"_s);
    number.stamps = {std::make_shared<TextStamp>(), oddStamp()};
}

TEST(Profile, GivesBackEveryFieldAndTheStampsInOrder)
{
    const Scratch scratch;
    auto seal = std::make_shared<ImageStamp>();
    seal->loadPicture(asPath(scratch.writePicture(u"seal.png"_s, {20, 10}, QColor(10, 200, 30, 128))));
    seal->stampImageOpacity = 70;
    seal->stampImageRotation = -30;
    seal->stampImageWidth = 44;
    seal->setLabel(u"Seal"_s);
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

// Other programs read profiles, and a profile that is saved again must not change.
TEST(Profile, IsAnXmlPropertyListOfTheseKeys)
{
    const Scratch scratch;
    Numbering number;
    fill(number);
    ASSERT_TRUE(number.save(asPath(scratch.path(name))));
    EXPECT_TRUE(readFile(scratch.path(name)).startsWith("<?xml"));
    EXPECT_EQ(keysOf(store::readPropertyListFile(asPath(scratch.path(name)))),
              words("endPage hasLabel isBackupFile isContinuousNumbering isMarginInPercentage isSymmetryPage "
                    "labelPrefix marginLeft marginTop marginRight marginBottom marginUnit numberSteps "
                    "outputFolder pageRange startNumber startPage isHighlightStamp isLivePreview Stamps"));
}

TEST(Profile, NumbersAreCutToThirtyTwoBits)
{
    const Scratch scratch;
    for (const auto& [set, loaded] :
         Rows<std::int64_t, std::int64_t>{{(std::int64_t{5} << 32) + 17, 17},
                                          {std::int64_t{1} << 31, std::numeric_limits<std::int32_t>::min()},
                                          {-1, -1},
                                          {std::numeric_limits<std::int64_t>::max(), -1}}) {
        Numbering number;
        number.setStartPage(set);
        ASSERT_TRUE(number.save(asPath(scratch.path(name))));
        ASSERT_TRUE(number.load(asPath(scratch.path(name))));
        EXPECT_EQ(number.startPage(), loaded);
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
    EXPECT_FALSE(record.contains(u"Stamps"_s));
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
    picture->setLabel(u"Seal"_s);
    whole.stamps = {oddStamp(), picture, oddStamp()};
    const QByteArray full = store::writePropertyList(*whole.getData());
    const QString text = u"<key>%1</key>\\s*<string>[^<]*</string>"_s;
    const QString data = u"<key>%1</key>\\s*<data>[^<]*</data>"_s;
    for (const QString& pattern :
         {text.arg(u"labelPrefix"_s), text.arg(u"outputFolder"_s), text.arg(u"label"_s),
          text.arg(u"paddingCharacter"_s), text.arg(u"numberFormat"_s), text.arg(u"fontName"_s),
          text.arg(u"stampImagePath"_s), data.arg(u"fontColor"_s), data.arg(u"outlineColor"_s)}) {
        SCOPED_TRACE(pattern.toStdString());
        const QByteArray cut = QString::fromUtf8(full).remove(QRegularExpression(pattern)).toUtf8();
        ASSERT_NE(cut, full);
        Numbering number;
        ASSERT_TRUE(number.load(asPath(scratch.write(name, cut))));
        ASSERT_TRUE(number.save(asPath(scratch.path(name))));
        // Settings hold the same record.
        const store::Record read = store::readPropertyList(cut);
        store::Record settingsRecord;
        settingsRecord.set(u"number"_s, read);
        MemoryDefaults store;
        store.setValue(u"SETTINGS"_s, settingsRecord);
        Settings settings(&store);
        EXPECT_EQ(settings.getData()->record(u"number"_s)->entries().size(), 20U);

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
        scratch.path(u"missing"_s),
        scratch.path(),
        scratch.write(u"empty"_s, ""),
        scratch.write(u"text"_s, "startPage=2"),
        scratch.write(u"array"_s, array),
        scratch.write(u"deep"_s, deep),
        scratch.write(u"nothing"_s, "<plist><dict/></plist>"),
        scratch.write(u"another"_s, "<plist><dict><key>Label</key><string>x</string></dict></plist>"),
        scratch.write(u"half"_s, "<plist><dict><key>startPage</key><integer>9</integer>"),
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
    EXPECT_EQ(stamp->label(), u"after"_s);
    ASSERT_TRUE(number.save(asPath(scratch.path(name))));
    EXPECT_TRUE(readFile(scratch.path(name)).contains(QByteArray("#FF00FF00").toBase64()));
}

} // namespace
} // namespace quillfern
