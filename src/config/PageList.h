#pragma once

#include "platform/system/Failure.h"

#include <QString>
#include <cstdint>
#include <limits>
#include <vector>

namespace quillfern {

/// A list of pages that cannot be read. The reason says where.
class PageListFault final : public Failure
{
  public:
    PageListFault(Reason reason, qsizetype place) : Failure(std::move(reason)), place_(place) {}
    /// The index of the first character that does not fit.
    [[nodiscard]] qsizetype place() const { return place_; }

  private:
    qsizetype place_;
};

/// Pages as people list them: "1,3-5,10-" is page 1, pages 3 to 5, and page 10 and all after it. Pages count
/// from 1; their order and pages named twice do not matter; blanks are allowed around numbers, and an en dash
/// is a hyphen. A page beyond the end of a document is simply not there.
class PageList
{
  public:
    /// Both ends belong to the range.
    struct Range
    {
        std::int64_t first = 1;
        std::int64_t last = toTheEnd;
        bool operator==(const Range&) const = default;
    };
    static constexpr std::int64_t toTheEnd = std::numeric_limits<std::int64_t>::max();

    /// No list: nothing is selected by it.
    PageList() = default;
    /// Throws PageListFault. A text of nothing but blanks gives no list.
    [[nodiscard]] static PageList parse(const QString& text);
    /// A list from a profile or settings. One that cannot be read keeps its text, for people to correct, and
    /// contains no page: stamping every page instead could not be taken back.
    [[nodiscard]] static PageList fromStored(const QString& text);

    /// True when there is no list.
    [[nodiscard]] bool isEmpty() const { return text_.isEmpty(); }
    /// False for a stored text that is no list.
    [[nodiscard]] bool isReadable() const { return isEmpty() || !ranges_.empty(); }
    /// Throws PageListFault for such a text.
    void requireReadable() const;
    [[nodiscard]] const QString& text() const { return text_; } ///< as it was written
    [[nodiscard]] bool contains(std::int64_t page) const;
    /// In the order of the pages, without overlaps.
    [[nodiscard]] const std::vector<Range>& ranges() const { return ranges_; }

    bool operator==(const PageList&) const = default;

  private:
    QString text_;
    std::vector<Range> ranges_;
};

} // namespace quillfern
