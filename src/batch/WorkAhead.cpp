#include "batch/WorkAhead.h"

#include "platform/system/Cancellation.h"
#include "platform/system/Failure.h"

#include <algorithm>
#include <chrono>
#include <unistd.h>

namespace quillfern {

namespace {

/// What the files in work may take together, beside the largest of them.
constexpr std::int64_t memoryForAll = std::int64_t{96} << 20;

const int processorCount = static_cast<int>(std::thread::hardware_concurrency());

/// How many files may be in work or wait for their turn; enough of them bridge one large file.
std::size_t mostAheadFor(int threads)
{
    const long usual = std::min(16 + 4 * threads, 128);
    // A library that finds no descriptor for a font takes another font, so files in work must never need the
    // last one. Every file has up to so many open, and the program has some of its own.
    constexpr long ofFile = 8;
    constexpr long ofProgram = 32;
    const long allowed = ::sysconf(_SC_OPEN_MAX);
    const long most = allowed < 0 ? usual : std::min(usual, (allowed - ofProgram) / ofFile);
    return static_cast<std::size_t>(std::max(1L, most));
}

} // namespace

/// One attempt at one file.
struct WorkAhead::Slot
{
    enum class State { Waiting, InWork, Done };

    Slot(std::size_t ofFile, StampRun from) : file(ofFile), start(std::move(from)), end(start) {}

    const std::size_t file;
    const StampRun start;
    State state = State::Waiting;
    bool isDropped = false;  ///< the result will not be wanted
    bool hadCompany = false; ///< other files were in work or waited for their turn at the same time
    std::stop_source stop = std::stop_source();
    std::atomic<std::int64_t> pages = 0;
    std::int64_t memory = 0;
    FileWork result = {};
    StampRun end;
};

WorkAhead::WorkAhead(const JobConfiguration& job, std::vector<PlannedFile> files, Means means)
    : job_(job), files_(std::move(files)), means_(std::move(means)),
      next_(means_.start.value_or(StampRun(job.startNumber)))
{
    const int threads = std::max(1, means_.threads);
    mostAhead_ = mostAheadFor(threads);
    onAbandon_.emplace(means_.abandon, GiveUp{*this});
    threadCount_ = static_cast<int>(std::min(static_cast<std::size_t>(threads), files_.size()));
    if (threadCount_ > 1) startThreads(threadCount_);
}

WorkAhead::~WorkAhead()
{
    {
        const std::lock_guard lock(mutex_);
        isClosing_ = true;
        for (const auto& [file, slot] : slots_)
            drop(slot);
        slots_.clear();
    }
    changed_.notify_all();
    for (std::thread& thread : threads_)
        thread.join();
}

void WorkAhead::startThreads(int count)
{
    threads_.reserve(static_cast<std::size_t>(count));
    for (int i = 0; i < count; ++i) {
        try {
            threads_.emplace_back([this] { serve(); });
        } catch (const std::exception&) {
            return; // those that there are do the work
        }
    }
}

void WorkAhead::giveUpAll()
{
    std::vector<std::stop_source> stops;
    {
        const std::lock_guard lock(mutex_);
        isEnding_ = true;
        for (const auto& [file, slot] : slots_)
            stops.push_back(slot->stop);
    }
    for (std::stop_source& stop : stops)
        stop.request_stop();
}

void WorkAhead::serve()
{
    std::unique_ptr<DocumentProcessors> processors;
    std::unique_lock lock(mutex_);
    while (!isClosing_) {
        if (const SlotPtr slot = nextToBegin())
            workOn(lock, slot, processors);
        else
            changed_.wait(lock);
    }
}

WorkAhead::SlotPtr WorkAhead::nextToBegin()
{
    if (noProcessors_) return nullptr;
    for (const auto& [file, slot] : slots_)
        if (slot->state == Slot::State::Waiting && (!isAlone_ || file == turn_)) return slot;
    const std::size_t next = slots_.empty() ? taken_ : slots_.rbegin()->first + 1;
    if (next >= files_.size()) return nullptr;
    // Without a slot the turn's own file has not been begun; only that one is still wanted at the end.
    if (next != turn_ && (isEnding_ || isAlone_ || next - turn_ >= mostAhead_)) return nullptr;
    auto slot = std::make_shared<Slot>(next, startOf(next));
    if (means_.abandon.stop_requested()) slot->stop.request_stop();
    slots_.emplace(next, slot);
    return slot;
}

void WorkAhead::workOn(std::unique_lock<std::mutex>& lock, const SlotPtr& slot,
                       std::unique_ptr<DocumentProcessors>& processors)
{
    slot->state = Slot::State::InWork;
    slot->hadCompany = ++inWork_ > 1 || slots_.size() > 1;
    lock.unlock();
    FileWork result;
    std::exception_ptr noProcessors;
    JobRun run(
        job_, slot->start,
        [this, &slot] {
            ++slot->pages;
            ++means_.pagesDone;
        },
        slot->stop.get_token());
    run.threads = std::max(1, processorCount / std::max(1, threadCount_));
    run.memoryNeeded = [this, &slot](std::int64_t bytes) { reserve(*slot, bytes); };
    HeldLogLines log;
    try {
        if (!processors) processors = means_.makeProcessors();
    } catch (...) {
        noProcessors = std::current_exception();
    }
    if (!noProcessors) {
        const LogHold hold(log);
        try {
            result = means_.work(*processors, slot->file, run);
        } catch (...) {
            result.problem = std::current_exception();
            result.document.isShortage = isCurrentExceptionShortage();
        }
    }
    result.log = std::move(log);
    lock.lock();
    if (slot->isDropped) {
        means_.pagesDone -= slot->pages;
        lock.unlock();
        result = {}; // removes what was written, before the room for it counts as free
        lock.lock();
    }
    --inWork_;
    memory_ -= std::exchange(slot->memory, 0);
    if (noProcessors) noProcessors_ = noProcessors;
    if (!slot->isDropped) {
        slot->state = Slot::State::Done;
        slot->result = std::move(result);
        slot->end = run.stamps();
        slot->hadCompany = slot->hadCompany || inWork_ > 0 || slots_.size() > 1;
        correctFrom(slot->file + 1);
    }
    changed_.notify_all();
}

void WorkAhead::reserve(Slot& slot, std::int64_t bytes)
{
    const std::stop_token stop = slot.stop.get_token();
    std::unique_lock lock(mutex_);
    changed_.wait(lock, stop,
                  [&] { return slot.file == turn_ || memory_ == 0 || memory_ + bytes <= memoryForAll; });
    throwIfCancelled(stop);
    slot.memory += bytes;
    memory_ += bytes;
}

StampRun WorkAhead::startOf(std::size_t file) const
{
    if (!job_.isContinuousNumbering) return StampRun(job_.startNumber);
    if (file == taken_) return next_;
    return endOf(*slots_.at(file - 1));
}

StampRun WorkAhead::endOf(const Slot& slot) const
{
    return slot.state == Slot::State::Done ? slot.end : plannedEndOf(slot);
}

StampRun WorkAhead::plannedEndOf(const Slot& slot) const
{
    return slot.start.after(files_[slot.file].stampedPages, job_.numberSteps, job_.stamps);
}

void WorkAhead::correctFrom(std::size_t file)
{
    if (!job_.isContinuousNumbering) return;
    for (auto at = slots_.find(file); at != slots_.end(); ++at) {
        StampRun start = startOf(at->first);
        if (at->second->start == start) continue;
        drop(at->second);
        at->second = std::make_shared<Slot>(at->first, std::move(start));
        if (means_.abandon.stop_requested()) at->second->stop.request_stop();
    }
}

void WorkAhead::drop(const SlotPtr& slot)
{
    slot->isDropped = true;
    slot->stop.request_stop();
    if (slot->state != Slot::State::Done) return; // whoever works on the file takes back what it counted
    means_.pagesDone -= slot->pages;
    slot->result = {};
}

void WorkAhead::dropAfter(std::size_t file)
{
    while (!slots_.empty() && slots_.rbegin()->first > file) {
        drop(slots_.rbegin()->second);
        slots_.erase(std::prev(slots_.end()));
    }
}

void WorkAhead::waitFor(std::unique_lock<std::mutex>& lock, std::size_t file,
                        const std::function<bool()>& goOn)
{
    constexpr std::chrono::milliseconds look(50);
    for (;;) {
        if (noProcessors_) std::rethrow_exception(noProcessors_);
        const auto slot = slots_.find(file);
        if (slot != slots_.end() && slot->second->state == Slot::State::Done) return;
        if (threads_.empty()) {
            if (const SlotPtr next = nextToBegin()) workOn(lock, next, ownProcessors_);
            continue;
        }
        changed_.wait_for(lock, look);
        if (isEnding_ || goOn()) continue;
        isEnding_ = true;
        dropAfter(file);
    }
}

void WorkAhead::stayAlone(std::unique_lock<std::mutex>& lock)
{
    isAlone_ = true;
    // What is short now will be short again, and work that is thrown away helps nobody.
    mostAhead_ = std::max<std::size_t>(1, mostAhead_ / 2);
    dropAfter(turn_);
    changed_.wait(lock, [this] { return inWork_ == 0; });
}

bool WorkAhead::makeRoom()
{
    std::unique_lock lock(mutex_);
    if (slots_.empty() && inWork_ == 0) return false;
    stayAlone(lock);
    return true;
}

FileWork WorkAhead::take(std::size_t file, const std::function<bool()>& goOn)
{
    std::unique_lock lock(mutex_);
    turn_ = file;
    isAlone_ = false;
    changed_.notify_all();
    waitFor(lock, file, goOn);
    SlotPtr slot = slots_.at(file);
    if (slot->result.document.isShortage && slot->hadCompany) {
        stayAlone(lock);
        drop(slot);
        slot = std::make_shared<Slot>(file, slot->start);
        if (means_.abandon.stop_requested()) slot->stop.request_stop();
        slots_[file] = slot;
        changed_.notify_all();
        waitFor(lock, file, goOn);
    }
    next_ = slot->end;
    slots_.erase(file);
    taken_ = file + 1;
    FileWork result = std::move(slot->result);
    result.endsAsPlanned = slot->end == plannedEndOf(*slot);
    result.pagesDone = slot->pages;
    return result;
}

} // namespace quillfern
