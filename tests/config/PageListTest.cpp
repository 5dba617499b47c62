#include "config/JobConfiguration.h"
#include "config/Preview.h"

#include <gtest/gtest.h>

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
    struct Case
    {
        const char* text;
        const char* pages;
        std::size_t ranges;
    };
    for (const Case& c : {Case{"1,3-5,10-", "1 3 4 5 10 11 12 ...", 3}, Case{"7", "7 ", 1},
                          Case{" 9 , 2 - 3,\t1 ", "1 2 3 9 ", 2}, Case{"4-6,5-8,6,9", "4 5 6 7 8 9 ", 1},
                          Case{"2-,5-6", "2 3 4 5 6 7 8 9 10 11 12 ...", 1}, Case{"3-3", "3 ", 1},
                          Case{"3\u20134", "3 4 ", 1}, Case{"12-2147483647", "12 ...", 1}}) {
        const PageList list = PageList::parse(QString::fromUtf8(c.text));
        EXPECT_EQ(pagesOf(list), c.pages) << c.text;
        EXPECT_EQ(list.ranges().size(), c.ranges) << c.text;
        EXPECT_EQ(list.text(), QString::fromUtf8(c.text));
    }
    EXPECT_TRUE(PageList::parse(QStringLiteral("  ")).isEmpty());
}

TEST(PageListTest, SaysWhereItCannotBeRead)
{
    struct Case
    {
        const char* text;
        int place; ///< from 0
        const char* said;
    };
    for (const Case& c :
         {Case{",", 0, "is missing"}, Case{"1,,3", 2, "is missing"}, Case{"1,", 2, "is missing"},
          Case{"-3", 0, "is missing"}, Case{"1-x", 2, "is missing"}, Case{"1-2-3", 3, "comma"},
          Case{"1 2", 2, "comma"}, Case{"5,0", 2, "from 1"}, Case{"8-5", 2, "backwards"},
          Case{"1,99999999999999999999", 2, "too large"}, Case{"\u0661", 0, "is missing"}}) {
        const QString text = QString::fromUtf8(c.text);
        try {
            EXPECT_EQ(pagesOf(PageList::parse(text)), "") << c.text << " was read";
        } catch (const PageListFault& fault) {
            EXPECT_EQ(fault.place(), c.place) << c.text;
            const std::string said = fault.what();
            EXPECT_NE(said.find(c.said), std::string::npos) << said;
            EXPECT_NE(said.find("character " + std::to_string(c.place + 1) + ' '), std::string::npos) << said;
        }
        const PageList stored = PageList::fromStored(text);
        EXPECT_EQ(pagesOf(stored), "") << "a damaged list must not stamp every page";
        EXPECT_TRUE(!stored.isReadable() && stored.text() == text);
    }
}

TEST(PageListTest, ThePreviewCountsListedPagesAsTheJobDoes)
{
    JobConfiguration job;
    job.startPage = 6; // a list takes the place of these two
    job.endPage = 7;
    for (const char* text : {"1", "2-5,9,11-", "3-", "4,6,8"}) {
        job.options.pageList = PageList::parse(QString::fromLatin1(text));
        for (const PageRange parity : {PageRange::AllPages, PageRange::OddPages, PageRange::EvenPages}) {
            job.pageRange = parity;
            std::int64_t stamped = 0;
            for (std::int64_t page = 1; page <= 14; ++page) {
                EXPECT_EQ(previewStampedPages(job, page - 1), stamped) << text << ", page " << page;
                const bool isStamped = isInPageRange(job, page) && hasChosenParity(job, page);
                EXPECT_EQ(isPreviewStampedPage(job, page - 1), isStamped) << text << ", page " << page;
                stamped += isStamped ? 1 : 0;
            }
        }
    }
}

} // namespace
} // namespace quillfern
