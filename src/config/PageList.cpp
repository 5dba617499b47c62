#include "config/PageList.h"

#include <algorithm>

namespace quillfern {

namespace {

constexpr std::int64_t largestPage = std::numeric_limits<std::int32_t>::max();

/// Reads a list from left to right.
class PageListReader
{
  public:
    explicit PageListReader(const QString& text) : text_(text) {}

    std::vector<PageList::Range> read()
    {
        std::vector<PageList::Range> ranges;
        do
            ranges.push_back(range());
        while (skip(u','));
        if (at_ < text_.size())
            fail(QT_TRANSLATE_NOOP("quillfern::Failure",
                                   "A comma or a hyphen is missing at character %1 of the pages \"%2\"."),
                 at_);
        return ranges;
    }

  private:
    PageList::Range range()
    {
        PageList::Range range;
        range.first = number();
        range.last = range.first;
        if (!skip(u'-') && !skip(u'\u2013')) return range;
        range.last = PageList::toTheEnd;
        if (at_ == text_.size() || text_[at_] == u',') return range;
        const qsizetype second = at_;
        range.last = number();
        if (range.last < range.first)
            fail(QT_TRANSLATE_NOOP("quillfern::Failure",
                                   "The range that ends at character %1 of the pages \"%2\" runs backwards."),
                 second);
        return range;
    }

    std::int64_t number()
    {
        skipBlanks();
        const qsizetype start = at_;
        std::int64_t value = 0;
        for (; at_ < text_.size() && text_[at_] >= u'0' && text_[at_] <= u'9'; ++at_) {
            value = value * 10 + (text_[at_].unicode() - u'0');
            if (value > largestPage)
                fail(QT_TRANSLATE_NOOP("quillfern::Failure",
                                       "The page number at character %1 of the pages \"%2\" is too large."),
                     start);
        }
        if (at_ == start)
            fail(QT_TRANSLATE_NOOP("quillfern::Failure",
                                   "A page number is missing at character %1 of the pages \"%2\"."),
                 start);
        if (value == 0)
            fail(QT_TRANSLATE_NOOP("quillfern::Failure",
                                   "Pages count from 1, unlike at character %1 of the pages \"%2\"."),
                 start);
        skipBlanks();
        return value;
    }

    bool skip(char16_t c)
    {
        if (at_ == text_.size() || text_[at_] != c) return false;
        ++at_;
        skipBlanks();
        return true;
    }

    void skipBlanks()
    {
        while (at_ < text_.size() && text_[at_].isSpace())
            ++at_;
    }

    [[noreturn]] void fail(const char* reason, qsizetype place) const
    {
        throw PageListFault(Reason(reason, {QString::number(place + 1), text_}), place);
    }

    const QString& text_;
    qsizetype at_ = 0;
};

} // namespace

PageList PageList::parse(const QString& text)
{
    PageList list;
    if (text.trimmed().isEmpty()) return list;
    list.text_ = text;
    std::vector<Range> ranges = PageListReader(text).read();
    std::sort(ranges.begin(), ranges.end(), [](const Range& a, const Range& b) { return a.first < b.first; });
    for (const Range& range : ranges) {
        const bool touches = !list.ranges_.empty() && range.first - 1 <= list.ranges_.back().last;
        if (touches)
            list.ranges_.back().last = std::max(list.ranges_.back().last, range.last);
        else
            list.ranges_.push_back(range);
    }
    return list;
}

PageList PageList::fromStored(const QString& text)
{
    try {
        return parse(text);
    } catch (const PageListFault&) {
        PageList list;
        list.text_ = text;
        return list;
    }
}

void PageList::requireReadable() const
{
    if (!isReadable()) static_cast<void>(parse(text_));
}

bool PageList::contains(std::int64_t page) const
{
    const auto after = std::upper_bound(ranges_.begin(), ranges_.end(), page,
                                        [](std::int64_t p, const Range& range) { return p < range.first; });
    return after != ranges_.begin() && page <= std::prev(after)->last;
}

} // namespace quillfern
