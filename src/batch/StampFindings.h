#pragma once

#include "batch/JobFinding.h"
#include "config/JobConfiguration.h"
#include "platform/drawing/TextShaper.h"

#include <QSizeF>
#include <cstdint>
#include <map>
#include <tuple>
#include <vector>

namespace quillfern {

/// Findings about the stamps themselves: none is in use, one is empty, a font that was chosen is not
/// installed. Looks at no file. A stop is one for whoever refuses such jobs; the window runs them, because a
/// job without stamps makes plain copies, and asks.
[[nodiscard]] std::vector<JobFinding> stampFindings(const StampValues& stamps);

/// Whether drawing these stamps makes a page transparent, as far as they are in use.
[[nodiscard]] bool drawTransparently(const StampValues& stamps);

/// A page that will be stamped.
struct StampedPage
{
    QSizeF size;              ///< in the unit in which stamps are measured on the page
    double pointsPerUnit = 1; ///< in print
    bool isOfPixels = false;
};

/// Finds the stamps that do not fit a page. Pages of one size are looked at once. To be used on one thread.
class StampFit
{
  public:
    /// The stamps are tried with this number and total, the longest of the job.
    StampFit(const JobConfiguration& job, std::int64_t number, std::int64_t pages);

    struct Faults
    {
        bool isOffPage = false;
        bool isTooLarge = false;
        bool isTooSmall = false;
    };
    [[nodiscard]] Faults faultsOn(const StampedPage& page);

  private:
    [[nodiscard]] Faults look(const StampedPage& page);

    const JobConfiguration& job_;
    std::int64_t number_;
    std::int64_t pages_;
    drawing::TextShaper shaper_;
    std::map<std::tuple<double, double, double, bool>, Faults> known_;
};

} // namespace quillfern
