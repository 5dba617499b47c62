#pragma once

#include "batch/DocumentProcessors.h"
#include "batch/JobRun.h"
#include "batch/StampedDocument.h"
#include "config/JobConfiguration.h"
#include "platform/system/LogLine.h"
#include "stamps/StampRun.h"

#include <atomic>
#include <condition_variable>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <stop_token>
#include <thread>
#include <vector>

namespace quillfern {

/// What the work on one file of a job has come to; nothing that has a name has changed yet.
struct FileWork
{
    StampedDocument document;
    std::int64_t pagesDone = 0;
    bool isProcessed = false;        ///< a processor had the file
    std::exception_ptr problem = {}; ///< what the work threw, instead of a document
    HeldLogLines log = {};           ///< what the work has to say in the system log
    bool endsAsPlanned = true;       ///< with the number that the file's planned pages give
};

/// What is known of one file of a job before it is worked on.
struct PlannedFile
{
    std::int64_t stampedPages = 0; ///< that will probably use numbers
};

/// Works on the files of a job on several threads at once and hands the results out in list order, one at
/// each turn. With continuous numbering the work on a file begins with the number that the page counts of the
/// files before predict; where that proves wrong, the work is thrown away and done again, before its turn,
/// with the right number.
///
/// Made, used and destroyed on one thread. The number of files that are done and wait for their turn is
/// bounded, and so is the memory of those in work (JobRun::memoryNeeded); the file whose turn it is never
/// waits for memory.
class WorkAhead
{
  public:
    /// Does all of a file's work that can be done before its turn; called on a worker's thread, for several
    /// files at the same time.
    using Work = std::function<FileWork(DocumentProcessors&, std::size_t file, JobRun&)>;

    struct Means
    {
        std::function<std::unique_ptr<DocumentProcessors>()>
            makeProcessors; ///< called on each worker's thread
        Work work;
        std::atomic<std::int64_t>& pagesDone; ///< counts up with every page, and down for work thrown away
        int threads = 1;
        std::stop_token abandon; ///< gives up every file
        /// What the first file begins with, with continuous numbering; nothing: with the start number.
        std::optional<StampRun> start = {};
    };

    /// `job` must outlive this object. With one thread, and where the system refuses more, each file is
    /// worked on at its turn, on the caller's thread.
    WorkAhead(const JobConfiguration& job, std::vector<PlannedFile> files, Means means);
    /// Gives up what is in work.
    ~WorkAhead();
    WorkAhead(const WorkAhead&) = delete;
    WorkAhead& operator=(const WorkAhead&) = delete;

    /// The turn of file `file`, the next in list order: waits for its work. All earlier results have been
    /// dealt with. `goOn` is called every now and then; once it returns false, only the file whose turn it is
    /// will be finished. Work that failed for want of something that other files in work may have held is
    /// done again without other files. Throws what making the processors threw.
    [[nodiscard]] FileWork take(std::size_t file, const std::function<bool()>& goOn);

    /// What is to be done with the last result needs something that other files in work may hold: gives them
    /// up, and begins none before the next turn. Returns false when there is nothing to give up.
    bool makeRoom();

  private:
    struct Slot;
    using SlotPtr = std::shared_ptr<Slot>;

    void startThreads(int count);
    void serve();
    [[nodiscard]] SlotPtr nextToBegin();
    void workOn(std::unique_lock<std::mutex>& lock, const SlotPtr& slot,
                std::unique_ptr<DocumentProcessors>& processors);
    void reserve(Slot& slot, std::int64_t bytes);
    [[nodiscard]] StampRun startOf(std::size_t file) const;
    [[nodiscard]] StampRun endOf(const Slot& slot) const;
    [[nodiscard]] StampRun plannedEndOf(const Slot& slot) const;
    /// Begins anew those later files that were begun with a number that will not come.
    void correctFrom(std::size_t file);
    void drop(const SlotPtr& slot);
    void dropAfter(std::size_t file);
    void stayAlone(std::unique_lock<std::mutex>& lock);
    void waitFor(std::unique_lock<std::mutex>& lock, std::size_t file, const std::function<bool()>& goOn);
    void giveUpAll();

    const JobConfiguration& job_;
    const std::vector<PlannedFile> files_;
    Means means_;
    int threadCount_ = 1;   ///< as asked for, but no more than there are files
    std::size_t mostAhead_; ///< fewer with every time that something was short

    std::mutex mutex_;
    std::condition_variable_any changed_;
    std::map<std::size_t, SlotPtr> slots_; ///< without gaps, from the first file on that was not taken
    std::size_t turn_ = 0;                 ///< the file whose turn it is, or was last
    std::size_t taken_ = 0;                ///< how many files have had their turn
    StampRun next_;                        ///< where the next of them begins
    int inWork_ = 0;
    std::int64_t memory_ = 0; ///< of the files in work
    bool isEnding_ = false;   ///< no file after the present turn is begun
    bool isAlone_ = false;    ///< nothing is begun before the next turn but the present turn's own file
    bool isClosing_ = false;
    std::exception_ptr noProcessors_;

    std::unique_ptr<DocumentProcessors> ownProcessors_; ///< where there are no threads
    std::vector<std::thread> threads_;

    struct GiveUp
    {
        WorkAhead& work;
        void operator()() const { work.giveUpAll(); }
    };
    std::optional<std::stop_callback<GiveUp>> onAbandon_; ///< the last member: ends before the others
};

} // namespace quillfern
