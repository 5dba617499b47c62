#include "filelist/ItemPipeline.h"

#include "platform/system/Guarded.h"

#include <condition_variable>
#include <deque>
#include <mutex>

namespace quillfern {

struct ItemPipeline::State
{
    struct Slot
    {
        std::optional<FileItem> item;
        bool isReady = false;
    };

    std::mutex mutex;
    std::condition_variable readiness;
    std::deque<std::shared_ptr<Slot>> slots; ///< in the order of adding
    bool isAbandoned = false;

    bool abandoned()
    {
        const std::lock_guard lock(mutex);
        return isAbandoned;
    }
    [[nodiscard]] bool nextIsReady() const { return !slots.empty() && slots.front()->isReady; }
};

ItemPipeline::ItemPipeline(WorkerPool& pool, QString password, const char* failure,
                           std::shared_ptr<const KnownCounts> known)
    : pool_(pool), password_(std::move(password)), failure_(failure), known_(std::move(known)),
      state_(std::make_shared<State>())
{
}

ItemPipeline::~ItemPipeline()
{
    const std::lock_guard lock(state_->mutex);
    state_->isAbandoned = true;
}

void ItemPipeline::add(const FilePath& path)
{
    const auto slot = std::make_shared<State::Slot>();
    {
        const std::lock_guard lock(state_->mutex);
        state_->slots.push_back(slot);
    }
    pool_.start([state = state_, slot, path, password = password_, failure = failure_, known = known_] {
        if (state->abandoned()) return;
        std::optional<FileItem> item;
        guarded(failure, [&] {
            item = FileItem::initWithURL(path);
            const auto count = item && known ? known->of(path) : std::nullopt;
            if (count)
                item->takeCount(*count);
            else if (item)
                item->setPdfOpenPassword(password);
        });
        const std::lock_guard lock(state->mutex);
        slot->item = std::move(item);
        slot->isReady = true;
        if (state->nextIsReady()) state->readiness.notify_one();
    });
}

std::size_t ItemPipeline::pending() const
{
    const std::lock_guard lock(state_->mutex);
    return state_->slots.size();
}

void ItemPipeline::waitForNext(std::chrono::milliseconds atMost) const
{
    std::unique_lock lock(state_->mutex);
    state_->readiness.wait_for(lock, atMost,
                               [this] { return state_->slots.empty() || state_->nextIsReady(); });
}

std::vector<FileItem> ItemPipeline::takeReady()
{
    std::vector<FileItem> items;
    const std::lock_guard lock(state_->mutex);
    while (state_->nextIsReady()) {
        auto& item = state_->slots.front()->item;
        if (item) items.push_back(std::move(*item));
        state_->slots.pop_front();
    }
    return items;
}

} // namespace quillfern
