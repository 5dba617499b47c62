#pragma once

#include "batch/DocumentTarget.h"
#include "batch/FileOutcome.h"
#include "config/JobConfiguration.h"
#include "platform/system/FileIdentity.h"
#include "stamps/StampRun.h"

#include <QDateTime>
#include <atomic>
#include <cstdint>
#include <functional>
#include <optional>
#include <stop_token>

namespace quillfern {

/// Called after every page of a document, on the thread that stamps the document.
using PageProgress = std::function<void()>;

/// What changes while one or more documents are stamped, one after the other. The configuration itself never
/// changes, so several runs can go on at once, each on a thread of its own.
class JobRun
{
  public:
    /// Begins at the configuration's start number.
    /// Once `abandon` is stopped, the document in work is given up (Cancelled).
    explicit JobRun(const JobConfiguration& job, PageProgress progress = {}, std::stop_token abandon = {});
    /// Begins where `start` is.
    JobRun(const JobConfiguration& job, StampRun start, PageProgress progress, std::stop_token abandon);

    /// Printed as the total; 0 or less means the page count of the document in work.
    std::int64_t totalPages = 0;
    /// The version that the next document had when the job began; none when any version will do.
    std::optional<FileVersion> sourceVersion;
    CopyRules copyRules; ///< of the next document
    /// The moment that stamps print. Every run of one job has the same.
    QDateTime started = QDateTime::currentDateTime();
    /// How many threads the next document may use for what can be done in parallel; 0 for as many as there
    /// are processors.
    int threads = 0;
    /// Is told about how many bytes of memory the next document takes, before it takes them, and returns
    /// when there is as much room beside the other documents in work. Empty where documents are worked on
    /// one after the other.
    std::function<void(std::int64_t)> memoryNeeded;

    [[nodiscard]] StampRun& stamps() { return stamps_; }
    [[nodiscard]] const StampRun& stamps() const { return stamps_; }
    [[nodiscard]] std::int64_t numberCounter() const { return stamps_.numberCounter; }
    /// The current page was stamped: advances the running number by one step.
    void numberUsed();
    /// The current page is done, stamped or not. Throws Cancelled when the document is given up.
    void pageDone() const;
    /// Resets the running number to the start number, as before the first document.
    void reset() { stamps_.reset(); }

    /// A document begins.
    void beginUpdate();
    /// The document ends, or is to end after the current page. Any thread.
    void cancelUpdate() { isUpdating_ = false; }
    /// Whether to go on with the document's next page.
    [[nodiscard]] bool isUpdating() const { return isUpdating_; }

    /// Handed to readers and writers, which look at the token while they work on the document.
    [[nodiscard]] const std::stop_token& abandoned() const { return abandon_; }

    /// The numbers used since beginUpdate().
    [[nodiscard]] const std::optional<NumbersUsed>& numbers() const { return numbers_; }

  private:
    StampRun stamps_;
    std::int64_t numberSteps_;
    std::atomic<bool> isUpdating_ = false;
    std::optional<NumbersUsed> numbers_;
    PageProgress progress_;
    std::stop_token abandon_;
};

} // namespace quillfern
