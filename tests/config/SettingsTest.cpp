#include "config/Settings.h"

#include "platform/store/PlistDefaultsStore.h"
#include "platform/store/PropertyList.h"
#include "platform/system/NativePath.h"
#include "stamps/ImageStamp.h"
#include "stamps/TextStamp.h"
#include "support/Fakes.h"
#include "support/Records.h"
#include "support/Tools.h"

namespace quillfern {
namespace {

const QString settingsKey = u"SETTINGS"_s;

TEST(Settings, RecordHasItsKeysInOrder)
{
    Settings settings;
    settings.pdfOpenPassword.reset();
    settings.outputFolderPath.reset();
    const auto record = settings.getData();
    ASSERT_TRUE(record);
    EXPECT_EQ(keysOf(*record), words("isSetCurrentAsDefaultOutputFolderPath isOpenFolderAfterConversion "
                                     "pdfOpenPassword outputFolderPath number isClearProcessedFiles"));
    EXPECT_EQ(record->text(u"outputFolderPath"_s), QString());
    EXPECT_EQ(settings.pdfOpenPassword, QString()) << "an absent text becomes an empty one in the object too";
    EXPECT_EQ(settings.outputFolderPath, QString());
}

TEST(Settings, SurviveARunWithTheirConfiguration)
{
    const Scratch scratch;
    const FakeFolders folders(scratch.path());
    store::PlistDefaultsStore store(folders);
    Settings settings(&store);
    settings.isClearProcessedFiles = true;
    settings.isOpenFolderAfterConversion = false;
    settings.outputFolderPath = u"/out/\u00fcmlaut \U0001F600"_s;
    settings.pdfOpenPassword = u"p<&>w"_s;
    settings.number->setMarginLeft(28.34645669291339);
    settings.number->stamps.push_back(std::make_shared<TextStamp>());
    settings.synchronize();
    store::PlistDefaultsStore later(folders);
    EXPECT_EQ(Settings(&later).getData(), settings.getData());
}

TEST(Settings, AnOutputFolderOfAnyBytesIsRemembered)
{
    const QString bytesKey = u"outputFolderPathBytes"_s;
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
        edited.set(u"outputFolderPath"_s, u"/another"_s);
        Settings settings;
        settings.setData(&edited);
        EXPECT_EQ(settings.outputFolderPath, u"/another"_s);
    }
}

TEST(Settings, AFolderNotToBeRememberedIsForgotten)
{
    const Rows<std::optional<QString>, bool, std::optional<QString>, bool> cases = {
        {u"/out"_s, true, u"/out"_s, true},        {u"/out"_s, false, QString(), false},
        {QString(), true, QString(), false},       {QString(), false, QString(), false},
        {std::nullopt, true, std::nullopt, false},
    };
    for (const auto& [folder, remember, folderAfter, rememberAfter] : cases) {
        store::Record record;
        record.set(u"isSetCurrentAsDefaultOutputFolderPath"_s, remember);
        if (folder) record.set(u"outputFolderPath"_s, *folder);
        Settings settings;
        settings.setData(&record);
        EXPECT_EQ(settings.outputFolderPath, folderAfter);
        EXPECT_EQ(settings.isSetCurrentAsDefaultOutputFolderPath, rememberAfter);
    }
}

TEST(Settings, MissingKeysGiveNothingAndOtherThingsChangeNothing)
{
    Settings settings;
    settings.outputFolderPath = u"/out"_s;
    settings.number->setStartNumber(5);
    settings.setData(nullptr);
    EXPECT_EQ(settings.outputFolderPath, u"/out"_s);
    store::Record empty;
    settings.setData(&empty);
    EXPECT_FALSE(settings.isOpenFolderAfterConversion);
    EXPECT_FALSE(settings.outputFolderPath);
    EXPECT_FALSE(settings.pdfOpenPassword);
    EXPECT_EQ(settings.number->startNumber(), 5) << "there was no configuration in the record";

    MemoryDefaults store;
    store.values.insert_or_assign(settingsKey, u"not a dictionary"_s);
    EXPECT_TRUE(Settings(&store).isOpenFolderAfterConversion);
}

TEST(Settings, TheirConfigurationComesAfterTheStandAloneOne)
{
    Numbering alone;
    alone.setStartNumber(3);
    alone.setNumberSteps(4);
    MemoryDefaults store;
    store.values.insert_or_assign(u"NUMBERING"_s, *alone.getData());
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
    EXPECT_FALSE(store.values.count(u"NUMBERING"_s));
    settings.number->synchronize();
    EXPECT_EQ(store.flushes, 2);
    EXPECT_TRUE(store.values.count(u"NUMBERING"_s));
    Settings().synchronize(); // without a store nothing is saved, and nothing fails
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
