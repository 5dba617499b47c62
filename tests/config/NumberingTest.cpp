#include "config/Numbering.h"

#include "config/StampListOperations.h"
#include "stamps/TextStamp.h"
#include "support/Cases.h"

namespace quillfern {
namespace {

class Counter final : public NumberingDelegate
{
  public:
    void PropertyChanged(Numbering&) override { ++count; }
    int count = 0;
};

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
    JobOptions options;
    options.realSize = true;
    number.setOptions(options);
    number.setOptions(options);
    EXPECT_EQ(counter.count, 3);
}

TEST(NumberingTest, AConfigurationKeepsWhatItWasMadeOf)
{
    Numbering number;
    auto stamp = std::make_shared<TextStamp>();
    stamp->number.numberFormat = u"before"_s;
    number.stamps.push_back(stamp);
    number.setStartNumber(41);
    const JobConfiguration job = number.configuration();
    stamp->number.numberFormat = u"after"_s;
    stamp->setIsSelected(false);
    number.stamps.clear();
    number.setStartNumber(1);
    EXPECT_EQ(job.startNumber, 41);
    ASSERT_EQ(job.stamps.size(), 1U);
    EXPECT_TRUE(job.stamps[0]->isSelected());
    EXPECT_EQ(job.stamps[0]->description(), u"Numbers [before]"_s);
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
    const Rows<const char*, bool, std::vector<int>, const char*, std::vector<int>> cases = {
        {"one up", true, {2}, "acbd", {1}},
        {"two up together", true, {1, 2}, "bcad", {0, 1}},
        {"two apart down", false, {0, 2}, "badc", {1, 3}},
        {"neighbours down", false, {1, 2}, "adbc", {2, 3}},
        {"the first up is refused", true, {0, 1}, "abcd", {}},
        {"the last down is refused", false, {3}, "abcd", {}},
        {"nothing", true, {}, "abcd", {}},
    };
    const StampList original = number.stamps;
    for (const auto& [what, up, rows, orderAfter, selection] : cases) {
        number.stamps = original;
        const RowSelection after = up ? list.moveStampUpAction(rows) : list.moveStampDownAction(rows);
        EXPECT_EQ(order(), orderAfter) << what;
        EXPECT_EQ(after.rows, selection) << what;
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

} // namespace
} // namespace quillfern
