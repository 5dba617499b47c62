#include "config/Settings.h"

#include "platform/store/PlistDefaultsStore.h"
#include "platform/store/PropertyList.h"
#include "platform/system/NativePath.h"
#include "stamps/ImageStamp.h"
#include "stamps/TextStamp.h"
#include "support/Fakes.h"
#include "support/Tools.h"

#include <gtest/gtest.h>

namespace quillfern {
namespace {

const QString settingsKey = QStringLiteral("SETTINGS");

std::vector<std::string> keysOf(const store::Record& record)
{
    std::vector<std::string> keys;
    for (const auto& [key, value] : record.entries())
        keys.push_back(key.toStdString());
    return keys;
}

TEST(Settings, RecordHasItsKeysInOrder)
{
    Settings settings;
    settings.pdfOpenPassword.reset();
    settings.outputFolderPath.reset();
    const auto record = settings.getData();
    ASSERT_TRUE(record);
    EXPECT_EQ(
        keysOf(*record),
        (std::vector<std::string>{"isSetCurrentAsDefaultOutputFolderPath", "isOpenFolderAfterConversion",
                                  "pdfOpenPassword", "outputFolderPath", "number", "isClearProcessedFiles"}));
    EXPECT_EQ(record->text(QStringLiteral("outputFolderPath")), QString());
    EXPECT_EQ(settings.pdfOpenPassword, QString()) << "an absent text becomes an empty one in the object too";
    EXPECT_EQ(settings.outputFolderPath, QString());
}

TEST(Settings, SurviveARunWithTheirConfiguration)
{
    const Scratch scratch;
    const FakeFolders folders(scratch.path());
    {
        store::PlistDefaultsStore store(folders);
        Settings settings(&store);
        settings.isClearProcessedFiles = true;
        settings.isOpenFolderAfterConversion = false;
        settings.outputFolderPath = QStringLiteral("/out/\u00fcmlaut \U0001F600");
        settings.pdfOpenPassword = QStringLiteral("p<&>w");
        settings.number->setStartNumber(7);
        settings.number->setMarginLeft(28.34645669291339);
        settings.number->stamps.push_back(std::make_shared<TextStamp>());
        settings.synchronize();
    }
    store::PlistDefaultsStore store(folders);
    const Settings settings(&store);
    EXPECT_TRUE(settings.isClearProcessedFiles);
    EXPECT_FALSE(settings.isOpenFolderAfterConversion);
    EXPECT_TRUE(settings.isSetCurrentAsDefaultOutputFolderPath);
    EXPECT_EQ(settings.outputFolderPath, QStringLiteral("/out/\u00fcmlaut \U0001F600"));
    EXPECT_EQ(settings.pdfOpenPassword, QStringLiteral("p<&>w"));
    EXPECT_EQ(settings.number->startNumber(), 7);
    EXPECT_EQ(settings.number->marginLeft(), 28.34645669291339);
    EXPECT_EQ(settings.number->stamps.size(), 1U);
}

TEST(Settings, AnOutputFolderOfAnyBytesIsRemembered)
{
    const QString bytesKey = QStringLiteral("outputFolderPathBytes");
    for (const QByteArray& path : {QByteArray("/out/latin\xE9/\xFF"),
                                   QByteArray("/out/\xC3\xA9 \xF0\x9F\x98\x80"), QByteArray("/plain")}) {
        const Scratch scratch;
        const FakeFolders folders(scratch.path());
        {
            store::PlistDefaultsStore store(folders);
            Settings settings(&store);
            settings.outputFolderPath = pathText(path);
            EXPECT_FALSE(settings.synchronize());
        }
        store::PlistDefaultsStore store(folders);
        EXPECT_EQ(nativePath(*Settings(&store).outputFolderPath), path);
        const store::RecordValue stored = *store.value(settingsKey);
        const store::Record& record = *stored.as<store::Record>();
        EXPECT_EQ(record.contains(bytesKey), !QString::fromUtf8(path).toUtf8().contains(path))
            << "ordinary paths are stored as ever";

        // Another folder that was written without its bytes counts, not the bytes of the one before.
        store::Record edited = record;
        edited.set(QStringLiteral("outputFolderPath"), QStringLiteral("/another"));
        Settings settings;
        settings.setData(&edited);
        EXPECT_EQ(settings.outputFolderPath, QStringLiteral("/another"));
    }
}

TEST(Settings, AFolderNotToBeRememberedIsForgotten)
{
    struct Case
    {
        std::optional<QString> folder;
        bool remember;
        std::optional<QString> folderAfter;
        bool rememberAfter;
    };
    const std::vector<Case> cases = {
        {QStringLiteral("/out"), true, QStringLiteral("/out"), true},
        {QStringLiteral("/out"), false, QString(), false},
        {QString(), true, QString(), false},
        {QString(), false, QString(), false},
        {std::nullopt, true, std::nullopt, false},
    };
    for (const Case& c : cases) {
        store::Record record;
        record.set(QStringLiteral("isSetCurrentAsDefaultOutputFolderPath"), c.remember);
        if (c.folder) record.set(QStringLiteral("outputFolderPath"), *c.folder);
        Settings settings;
        settings.setData(&record);
        EXPECT_EQ(settings.outputFolderPath, c.folderAfter);
        EXPECT_EQ(settings.isSetCurrentAsDefaultOutputFolderPath, c.rememberAfter);
    }
}

TEST(Settings, MissingKeysGiveNothingAndOtherThingsChangeNothing)
{
    Settings settings;
    settings.outputFolderPath = QStringLiteral("/out");
    settings.number->setStartNumber(5);
    settings.setData(nullptr);
    EXPECT_EQ(settings.outputFolderPath, QStringLiteral("/out"));
    store::Record empty;
    settings.setData(&empty);
    EXPECT_FALSE(settings.isOpenFolderAfterConversion);
    EXPECT_FALSE(settings.outputFolderPath);
    EXPECT_FALSE(settings.pdfOpenPassword);
    EXPECT_EQ(settings.number->startNumber(), 5) << "there was no configuration in the record";

    MemoryDefaults store;
    store.values.insert_or_assign(settingsKey, QStringLiteral("not a dictionary"));
    EXPECT_TRUE(Settings(&store).isOpenFolderAfterConversion);
}

TEST(Settings, TheirConfigurationComesAfterTheStandAloneOne)
{
    Numbering alone;
    alone.setStartNumber(3);
    alone.setNumberSteps(4);
    MemoryDefaults store;
    store.values.insert_or_assign(QStringLiteral("NUMBERING"), *alone.getData());
    EXPECT_EQ(Settings(&store).number->startNumber(), 3);

    Settings inner;
    inner.number->setStartNumber(9);
    store.values.insert_or_assign(settingsKey, *inner.getData());
    const Settings settings(&store);
    EXPECT_EQ(settings.number->startNumber(), 9);
    EXPECT_EQ(settings.number->numberSteps(), 1);
}

TEST(Settings, SynchronizeWritesAndFlushesOnce)
{
    MemoryDefaults store;
    Settings settings(&store);
    settings.synchronize();
    EXPECT_EQ(store.flushes, 1);
    EXPECT_TRUE(store.values.count(settingsKey));
    EXPECT_FALSE(store.values.count(QStringLiteral("NUMBERING")));
    settings.number->synchronize();
    EXPECT_EQ(store.flushes, 2);
    EXPECT_TRUE(store.values.count(QStringLiteral("NUMBERING")));
    Settings().synchronize(); // without a store nothing is saved, and nothing fails
}

TEST(Settings, SynchronizeSaysWhatWentWrongAndCanBeRepeated)
{
    MemoryDefaults store;
    Settings settings(&store);
    store.failures = 1;
    const auto problem = settings.synchronize();
    ASSERT_TRUE(problem);
    EXPECT_EQ(problem->shown, QStringLiteral("no space left"));
    EXPECT_FALSE(settings.synchronize());
    EXPECT_EQ(store.flushes, 1);
}

TEST(Settings, HoldPicturesUpToTheirLimit)
{
    // A tenth of the limit is written; with the picture the text grows in proportion.
    constexpr qint64 bytes = Numbering::mostPictureBytes / 10;
    auto stamp = std::make_shared<ImageStamp>();
    EXPECT_THROW(stamp->setStampImage(QByteArray(bytes, '\0')), Failure); // no picture, but kept
    Settings settings;
    settings.number->stamps = {stamp};
    EXPECT_EQ(settings.number->pictureBytesWith(*stamp, 5), 5) << "its own picture is replaced";
    EXPECT_EQ(settings.number->pictureBytesWith(TextStamp(), 5), bytes + 5);
    store::Record all;
    all.set(settingsKey, *settings.getData());
    EXPECT_LT(store::writePropertyList(all).size() * 10, store::largestPropertyList);
}

} // namespace
} // namespace quillfern
