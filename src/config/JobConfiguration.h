#pragma once

#include "config/JobOptions.h"
#include "stamps/StampList.h"

#include <QString>
#include <cstdint>
#include <optional>

namespace quillfern {

/// Which pages inside the page range are stamped. The values are stored in profiles; any other value stamps
/// no page.
enum class PageRange : std::int32_t {
    AllPages = 0,
    OddPages = 1,
    EvenPages = 2,
};

/// The unit of the margins. The values are stored in profiles; any other value counts as points.
enum class MarginUnit : std::int32_t {
    Points = 0,
    Millimetres = 1,
    Inches = 2,
};

/// What a job does, as plain data. A job and a preview work on a copy, so that no edit reaches a job that
/// runs and several jobs can run at once; several threads may read one configuration.
struct JobConfiguration
{
    StampValues stamps; ///< in drawing order

    bool isLivePreview = false;
    bool isHighlightStamp = true;
    std::int64_t startPage = 1; ///< 1-based
    std::int64_t endPage = 0;   ///< 1-based; 0 is the last page
    std::int64_t startNumber = 1;
    std::int64_t numberSteps = 1;
    PageRange pageRange = PageRange::AllPages;
    /// The margins, in marginUnit, or in percent of the page's width or height. Zero or less is no margin.
    double marginLeft = 0;
    double marginTop = 0;
    double marginRight = 0;
    double marginBottom = 0;
    MarginUnit marginUnit = MarginUnit::Points;
    bool isMarginInPercentage = false;
    bool isContinuousNumbering = false; ///< the running number goes on from file to file
    bool isBackupFile = false;          ///< keep a copy of a file that is processed in place
    bool isSymmetryPage = false;        ///< kept and saved only
    bool hasLabel = false;              ///< kept and saved only
    bool isWrittenAnew = false;         ///< PDF copies keep no earlier revision of the source; not saved
    bool refusesSigned = false;         ///< digitally signed documents fail; not saved
    std::optional<QString> labelPrefix = QString();  ///< kept and saved only
    std::optional<QString> outputFolder = QString(); ///< kept and saved only
    JobOptions options;
};

/// True when page `index` (1-based) lies between the first and the last page to stamp, or is in the list of
/// pages where there is one.
[[nodiscard]] inline bool isInPageRange(const JobConfiguration& job, std::int64_t index)
{
    if (!job.options.pageList.isEmpty()) return job.options.pageList.contains(index);
    return index >= job.startPage && (job.endPage == 0 || index <= job.endPage);
}

/// True when page `index` (1-based) has the parity that is stamped.
[[nodiscard]] bool hasChosenParity(const JobConfiguration& job, std::int64_t index);

/// How many pages of a document of so many pages are stamped.
[[nodiscard]] std::int64_t stampedPages(const JobConfiguration& job, std::int64_t pages);

/// True when pages of a PDF inside the range come out blank, where their parity is not the one that is
/// stamped. Pages of pixels stay as they are.
[[nodiscard]] inline bool blanksOtherPages(const JobConfiguration& job)
{
    return job.pageRange != PageRange::AllPages && !job.options.keepOtherPages;
}

} // namespace quillfern
