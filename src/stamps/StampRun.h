#pragma once

#include "stamps/MarginAnchor.h"
#include "stamps/StampList.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace quillfern {

/// What changes from page to page while stamps are drawn: the running number and, for every stamp that
/// alternates on facing pages, the side on which the stamp stands. Every job and every preview has a run of
/// its own, so that neither changes the other's numbers. Not for use from two threads at once.
class StampRun
{
  public:
    /// Begins at the start number, with each stamp on the side of its own anchor.
    explicit StampRun(std::int64_t startNumber) : numberCounter(startNumber), startNumber_(startNumber) {}

    /// The number printed on the page being drawn. The caller adds the step after each stamped page.
    std::int64_t numberCounter;

    /// The anchor of the stamp at `index` of the list on the page now being drawn; to be called once for each
    /// stamp on each page. With `isSymmetric` the anchor alternates from the given one, counted since the
    /// last reset().
    [[nodiscard]] MarginAnchor getNextMarginAnchor(std::size_t index, bool isSymmetric, MarginAnchor anchor);

    /// Back to the start number and to the side each stamp begins on.
    void reset();

    /// What this run will have become after so many stamped pages with these stamps.
    [[nodiscard]] StampRun after(std::int64_t pages, std::int64_t numberSteps,
                                 const StampValues& stamps) const;

    /// Whether the next page would be stamped alike.
    bool operator==(const StampRun&) const = default;

  private:
    std::int64_t startNumber_;
    std::vector<MarginAnchor> lastMarginAnchors_; ///< by stamp; None until a page was drawn in this run
};

} // namespace quillfern
