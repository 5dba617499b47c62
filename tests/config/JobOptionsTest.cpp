#include "config/Numbering.h"
#include "config/Settings.h"
#include "platform/store/PropertyList.h"
#include "stamps/TextStamp.h"

#include "support/Cases.h"
#include <QCryptographicHash>

namespace quillfern {
namespace {

JobOptions everyOption()
{
    JobOptions options;
    for (bool JobOptions::*field :
         {&JobOptions::checkedOnly, &JobOptions::keepOtherPages, &JobOptions::realSize,
          &JobOptions::visiblePage, &JobOptions::usePasswords, &JobOptions::unlock, &JobOptions::keepFolders,
          &JobOptions::tifNames, &JobOptions::replaceStamps, &JobOptions::index})
        options.*field = true;
    options.pageList = PageList::parse(u"1,3-5,10-"_s);
    options.existing = ExistingCopies::Number;
    options.namePattern = u"{first} {name}"_s;
    return options;
}

QByteArray bytesOf(Numbering& number)
{
    return store::writePropertyList(*number.getData());
}

TEST(JobOptionsTest, WithoutOptionsRecordsKeepTheirBytes)
{
    Settings settings;
    auto stamp = std::make_shared<TextStamp>();
    settings.number->stamps = {stamp};
    const auto hash = [&] {
        return QCryptographicHash::hash(store::writePropertyList(*settings.getData()),
                                        QCryptographicHash::Sha256)
            .toHex()
            .toStdString();
    };
    // Of the same settings as they were written before there were options.
    const std::string before = "3fcb20b8cf21fb1a66024655fd9e81f576e09d44664b7ed8a7cb8e2486be3630";
    EXPECT_EQ(hash(), before);
    JobOptions passing;
    passing.password = u"secret"_s;
    passing.indexFile = FilePath::fromText(u"/tmp/index.csv"_s);
    settings.number->setOptions(passing);
    EXPECT_EQ(hash(), before) << "what belongs to one job only was saved";
    settings.number->setOptions(everyOption());
    stamp->isFillIn = true;
    EXPECT_NE(hash(), before);
    settings.number->setOptions({});
    stamp->isFillIn = false;
    EXPECT_EQ(hash(), before);
}

TEST(JobOptionsTest, ComeBackFromTheirRecord)
{
    Numbering saved;
    saved.setOptions(everyOption());
    auto stamp = std::make_shared<TextStamp>();
    stamp->isFillIn = true;
    saved.stamps = {stamp};
    const store::Record whole = *saved.getData();
    const auto& entries = whole.entries();
    ASSERT_EQ(entries.size(), 20U + 13U);
    EXPECT_EQ(entries[19].first, u"Stamps"_s) << "the options come behind";

    Numbering loaded;
    const store::Record record = store::readPropertyList(bytesOf(saved));
    ASSERT_TRUE(loaded.setData(&record));
    EXPECT_EQ(loaded.options(), everyOption());
    EXPECT_TRUE(dynamic_cast<const TextStamp&>(*loaded.stamps.at(0)).isFillIn);
    Numbering old;
    const store::Record without = *old.getData();
    ASSERT_TRUE(loaded.setData(&without));
    EXPECT_EQ(loaded.options(), JobOptions()) << "a profile without options turns them off";
}

TEST(JobOptionsTest, ValuesThatCannotBeUsedDoNoHarm)
{
    store::Record record = *Numbering().getData();
    record.set(u"realSize"_s, u"yes"_s);
    record.set(u"pageList"_s, u"1-x"_s);
    record.set(u"existing"_s, 7);
    record.set(u"namePattern"_s, store::RecordValue::List());
    Numbering number;
    ASSERT_TRUE(number.setData(&record));
    EXPECT_FALSE(number.options().realSize);
    EXPECT_EQ(number.options().namePattern, QString());
    EXPECT_FALSE(isInPageRange(number.configuration(), 1)) << "no page is stamped by a damaged list";
    const store::Record again = *number.getData();
    EXPECT_EQ(again.text(u"pageList"_s), u"1-x"_s) << "kept for people to correct";
    EXPECT_EQ(again.integer32(u"existing"_s), 7);
}

} // namespace
} // namespace quillfern
