#include "config/Numbering.h"

#include "config/StampListOperations.h"
#include "stamps/TextStamp.h"
#include "support/Fakes.h"

#include <gtest/gtest.h>

namespace quillfern {
namespace {

class Counter final : public NumberingDelegate
{
  public:
    void PropertyChanged(Numbering&) override { ++count; }
    int count = 0;
};

TEST(NumberingTest, WatchedFieldsTellTheDelegateOnceAndOthersNever)
{
    Numbering number;
    Counter counter;
    number.setDelegate(&counter);
    const std::vector<std::pair<const char*, std::function<void()>>> watched = {
        {"startPage", [&] { number.setStartPage(2); }},
        {"endPage", [&] { number.setEndPage(9); }},
        {"startNumber", [&] { number.setStartNumber(5); }},
        {"numberSteps", [&] { number.setNumberSteps(2); }},
        {"pageRange", [&] { number.setPageRange(PageRange::OddPages); }},
        {"marginLeft", [&] { number.setMarginLeft(1); }},
        {"marginTop", [&] { number.setMarginTop(1); }},
        {"marginRight", [&] { number.setMarginRight(1); }},
        {"marginBottom", [&] { number.setMarginBottom(1); }},
        {"isContinuousNumbering", [&] { number.setIsContinuousNumbering(true); }},
        {"isHighlightStamp", [&] { number.setIsHighlightStamp(false); }},
        {"isLivePreview", [&] { number.setIsLivePreview(true); }},
        {"hasLabel", [&] { number.setHasLabel(true); }},
        {"labelPrefix", [&] { number.setLabelPrefix(QStringLiteral("x")); }},
    };
    std::set<std::string> names = {"marginAnchor", "numberType"}; // fields of stamps
    for (const auto& [name, change] : watched) {
        counter.count = 0;
        change();
        EXPECT_EQ(counter.count, 1) << name;
        change();
        EXPECT_EQ(counter.count, 1) << name << " set to what it was";
        names.insert(name);
    }
    EXPECT_EQ(Numbering::keyPathsForValuesAffectingIsSettingsChanged(), names);
    counter.count = 0;
    number.setMarginUnit(MarginUnit::Inches);
    number.setIsMarginInPercentage(true);
    number.setIsBackupFile(true);
    number.stamps.push_back(std::make_shared<TextStamp>());
    EXPECT_EQ(counter.count, 0);
}

TEST(NumberingTest, BracketsHoldBackAndTellOnce)
{
    Numbering number;
    Counter counter;
    number.setDelegate(&counter);
    const auto change = [&] {
        number.beginUpdate();
        number.setStartNumber(number.startNumber() + 1);
        number.setNumberSteps(number.numberSteps() + 1);
        EXPECT_EQ(counter.count, 0);
    };
    change();
    number.endUpdate(false);
    change();
    number.cancelUpdate();
    EXPECT_EQ(counter.count, 0);
    change();
    number.endUpdate(true);
    EXPECT_EQ(counter.count, 1);
    number.setEndPage(3);
    EXPECT_EQ(counter.count, 2);
}

TEST(NumberingTest, AConfigurationKeepsWhatItWasMadeOf)
{
    Numbering number;
    auto stamp = std::make_shared<TextStamp>();
    stamp->number.numberFormat = QStringLiteral("before");
    number.stamps.push_back(stamp);
    number.setStartNumber(41);
    const JobConfiguration job = number.configuration();
    stamp->number.numberFormat = QStringLiteral("after");
    stamp->setIsSelected(false);
    number.stamps.clear();
    number.setStartNumber(1);
    EXPECT_EQ(job.startNumber, 41);
    ASSERT_EQ(job.stamps.size(), 1U);
    EXPECT_TRUE(job.stamps[0]->isSelected());
    EXPECT_EQ(job.stamps[0]->description(), QStringLiteral("Numbers [before]"));
}

TEST(NumberingTest, TheRecordGoesRoundInItsOrder)
{
    Numbering number;
    number.setStartPage(2);
    number.setEndPage((std::int64_t{1} << 32) + 7); // cut to 32 bits
    number.setMarginTop(1.5);
    number.setMarginUnit(MarginUnit::Millimetres);
    number.setIsLivePreview(true);
    auto stamp = std::make_shared<TextStamp>();
    stamp->number.numberFormat = QStringLiteral("Seite {0} 🌿");
    stamp->textRotation = 45.7;
    stamp->font.fontColor = QColor(1, 2, 3);
    number.stamps.push_back(stamp);
    const auto record = number.getData();
    ASSERT_TRUE(record);
    QStringList keys;
    for (const auto& [key, value] : record->entries())
        keys.append(key);
    EXPECT_EQ(
        keys.join(u',').toStdString(),
        "endPage,hasLabel,isBackupFile,isContinuousNumbering,isMarginInPercentage,isSymmetryPage,labelPrefix,"
        "marginLeft,marginTop,marginRight,marginBottom,marginUnit,numberSteps,outputFolder,pageRange,"
        "startNumber,"
        "startPage,isHighlightStamp,isLivePreview,Stamps");
    Numbering other;
    Counter counter;
    other.setDelegate(&counter);
    EXPECT_TRUE(other.setData(&*record));
    EXPECT_EQ(counter.count, 0);
    EXPECT_EQ(other.endPage(), 7);
    EXPECT_EQ(other.startPage(), 2);
    ASSERT_EQ(other.stamps.size(), 1U);
    const auto& copy = static_cast<const TextStamp&>(*other.stamps[0]);
    EXPECT_EQ(copy.number, stamp->number);
    EXPECT_EQ(copy.textRotation, 45);
    EXPECT_EQ(copy.font, stamp->font);
    EXPECT_EQ(*other.getData(), *record);
}

TEST(NumberingTest, RecordsAreReadTolerantly)
{
    Numbering number;
    number.stamps.push_back(std::make_shared<TextStamp>());
    EXPECT_FALSE(number.setData(nullptr));
    EXPECT_EQ(number.stamps.size(), 1U);
    store::Record record;
    record.set(QStringLiteral("startPage"), QStringLiteral("three")); // of the wrong kind
    store::Record font;
    font.set(QStringLiteral("font"), store::Record());
    record.set(QStringLiteral("Stamps"), store::RecordValue::List{store::Record(), true, font});
    EXPECT_TRUE(number.setData(&record));
    EXPECT_EQ(number.startPage(), 0);
    EXPECT_EQ(number.numberSteps(), 0);
    EXPECT_FALSE(number.labelPrefix().has_value());
    EXPECT_EQ(number.stamps.size(), 1U) << "only the one with a font is a stamp";
    EXPECT_EQ(number.getData()->entries().size(), 6U) << "the record ends before the absent prefix";
    EXPECT_FALSE(number.isUpdating());
}

TEST(NumberingTest, BeginsWithWhatTheStoreHolds)
{
    MemoryDefaults store;
    {
        Numbering number(&store);
        number.setStartNumber(77);
        number.synchronize();
    }
    EXPECT_EQ(store.flushes, 1);
    EXPECT_EQ(Numbering(&store).startNumber(), 77);
}

class StampListTest : public testing::Test
{
  protected:
    void SetUp() override
    {
        for (const char* name : {"a", "b", "c", "d"}) {
            auto stamp = std::make_shared<TextStamp>();
            stamp->setLabel(QString::fromLatin1(name));
            number.stamps.push_back(stamp);
        }
    }
    std::string order() const
    {
        std::string text;
        for (const auto& stamp : number.stamps)
            text += stamp->label()->toStdString();
        return text;
    }
    Numbering number;
    std::string gone; ///< the labels of the announced stamps, each with the list at that moment
    StampListOperations list{
        number, [this](IStampItem& stamp) { gone += stamp.label()->toStdString() + " of " + order() + ";"; }};
};

TEST_F(StampListTest, MovesSelectionsByOneRow)
{
    struct Case
    {
        const char* what;
        bool up;
        std::vector<int> rows;
        const char* order;
        std::vector<int> selection;
    };
    const std::vector<Case> cases = {
        {"one up", true, {2}, "acbd", {1}},
        {"two up together", true, {1, 2}, "bcad", {0, 1}},
        {"two apart down", false, {0, 2}, "badc", {1, 3}},
        {"neighbours down", false, {1, 2}, "adbc", {2, 3}},
        {"the first up is refused", true, {0, 1}, "abcd", {}},
        {"the last down is refused", false, {3}, "abcd", {}},
        {"nothing", true, {}, "abcd", {}},
    };
    const StampList original = number.stamps;
    for (const Case& c : cases) {
        number.stamps = original;
        const RowSelection after = c.up ? list.moveStampUpAction(c.rows) : list.moveStampDownAction(c.rows);
        EXPECT_EQ(order(), c.order) << c.what;
        EXPECT_EQ(after.rows, c.selection) << c.what;
    }
}

TEST_F(StampListTest, RemovesAndSelectsTheRowBefore)
{
    EXPECT_EQ(list.removeStampAction({1, 3}).rows, std::vector<int>{2});
    EXPECT_EQ(order(), "ac");
    EXPECT_EQ(list.removeStampAction({}).rows, std::vector<int>{0}) << "nothing selected: refused";
    EXPECT_EQ(order(), "ac");
    EXPECT_EQ(list.removeStampAction({0}).rows, std::vector<int>{-1}) << "no row is left selected";
    EXPECT_EQ(order(), "c");
    EXPECT_EQ(gone, "b of abcd;a of ac;") << "the first one of those removed, while it is in the list";
}

TEST_F(StampListTest, RemovesAGivenStampWithTheSelectionItLeads)
{
    const auto b = number.stamps[1];
    const auto c = number.stamps[2];
    list.removeStamp(*c, {0});
    EXPECT_EQ(order(), "abd") << "not the selected one: it goes alone";
    list.removeStamp(*b, {1, 2});
    EXPECT_EQ(order(), "a") << "the first selected one: the selection goes";
    list.removeStamp(*b, {});
    EXPECT_EQ(order(), "a") << "gone already";
    EXPECT_EQ(gone, "c of abcd;b of abd;");
}

TEST_F(StampListTest, AddsAtTheEndAndTellsWhatCanMove)
{
    EXPECT_EQ(list.addStamp(std::make_shared<TextStamp>()).rows, std::vector<int>{4});
    EXPECT_FALSE(list.canMoveUp({0, 2}));
    EXPECT_TRUE(list.canMoveUp({1}));
    EXPECT_FALSE(list.canMoveUp({}));
    EXPECT_TRUE(list.canMoveDown({3}));
    EXPECT_FALSE(list.canMoveDown({1, 4}));
    EXPECT_FALSE(list.canMoveDown({}));
}

TEST_F(StampListTest, ResettingTheCountersTellsOnlyWhenItChangesThem)
{
    Counter counter;
    number.setDelegate(&counter);
    list.resetNumberCounters();
    EXPECT_EQ(counter.count, 0);
    number.setEndPage(4);
    counter.count = 0;
    list.resetNumberCounters();
    EXPECT_EQ(counter.count, 1);
    EXPECT_EQ(number.endPage(), 0);
}

} // namespace
} // namespace quillfern
