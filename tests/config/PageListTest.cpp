#include "config/PageList.h"

#include "support/Cases.h"

namespace quillfern {
namespace {

/// The pages of twelve that a list contains, and then what the list has at page 1000.
std::string pagesOf(const PageList& list)
{
    std::string text;
    for (int page = 1; page <= 12; ++page)
        if (list.contains(page)) text += std::to_string(page) + ' ';
    return text + (list.contains(1000) ? "..." : "");
}

TEST(PageListTest, ReadsWhatPeopleWrite)
{
    const Rows<const char*, const char*, std::size_t> cases = {{"1,3-5,10-", "1 3 4 5 10 11 12 ...", 3},
                                                               {"7", "7 ", 1},
                                                               {" 9 , 2 - 3,\t1 ", "1 2 3 9 ", 2},
                                                               {"4-6,5-8,6,9", "4 5 6 7 8 9 ", 1},
                                                               {"2-,5-6", "2 3 4 5 6 7 8 9 10 11 12 ...", 1},
                                                               {"3-3", "3 ", 1},
                                                               {"3\u20134", "3 4 ", 1},
                                                               {"12-2147483647", "12 ...", 1}};
    for (const auto& [text, pages, ranges] : cases) {
        const PageList list = PageList::parse(QString::fromUtf8(text));
        EXPECT_EQ(pagesOf(list), pages) << text;
        EXPECT_EQ(list.ranges().size(), ranges) << text;
        EXPECT_EQ(list.text(), QString::fromUtf8(text));
    }
    EXPECT_TRUE(PageList::parse(u"  "_s).isEmpty());
}

TEST(PageListTest, SaysWhereItCannotBeRead)
{
    const Rows<const char*, int, const char*> cases = {
        // the place counts from 0
        {",", 0, "is missing"},     {"1,,3", 2, "is missing"},
        {"1,", 2, "is missing"},    {"-3", 0, "is missing"},
        {"1-x", 2, "is missing"},   {"1-2-3", 3, "comma"},
        {"1 2", 2, "comma"},        {"5,0", 2, "from 1"},
        {"8-5", 2, "backwards"},    {"1,99999999999999999999", 2, "too large"},
        {"\u0661", 0, "is missing"}};
    for (const auto& [list, place, reason] : cases) {
        const QString text = QString::fromUtf8(list);
        try {
            EXPECT_EQ(pagesOf(PageList::parse(text)), "") << list << " was read";
        } catch (const PageListFault& fault) {
            EXPECT_EQ(fault.place(), place) << list;
            const std::string said = fault.what();
            EXPECT_NE(said.find(reason), std::string::npos) << said;
            EXPECT_NE(said.find("character " + std::to_string(place + 1) + ' '), std::string::npos) << said;
        }
        const PageList stored = PageList::fromStored(text);
        EXPECT_EQ(pagesOf(stored), "") << "a damaged list must not stamp every page";
        EXPECT_TRUE(!stored.isReadable() && stored.text() == text);
    }
}

} // namespace
} // namespace quillfern
