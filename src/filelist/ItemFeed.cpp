#include "filelist/ItemFeed.h"

namespace quillfern {

namespace {

using namespace std::chrono_literals;
using SteadyClock = std::chrono::steady_clock;

constexpr auto deliverEvery = 50ms;      ///< how long ready items wait at most before they are delivered
constexpr auto waitAtMost = 20ms;        ///< between two looks at the stop signal
constexpr std::size_t mostPending = 512; ///< files not yet counted: enough for all cores, little memory

} // namespace

ItemFeed::ItemFeed(WorkerPool& pool, const QString& password, const char* failure, Wanted wanted,
                   Deliver deliver, std::shared_ptr<const KnownCounts> known)
    : pipeline_(pool, password, failure, std::move(known)), wanted_(std::move(wanted)),
      deliver_(std::move(deliver))
{
}

bool ItemFeed::goOn()
{
    if (SteadyClock::now() - lastDelivered_ > deliverEvery) deliver();
    return wanted_();
}

void ItemFeed::add(const FilePath& path)
{
    while (pipeline_.pending() >= mostPending) {
        if (!goOn()) return;
        wait();
    }
    pipeline_.add(path);
}

void ItemFeed::finish()
{
    while (goOn() && pipeline_.pending() > 0)
        wait();
    deliver();
}

void ItemFeed::wait()
{
    pipeline_.waitForNext(waitAtMost);
    collect();
}

void ItemFeed::collect()
{
    for (FileItem& item : pipeline_.takeReady())
        batch_.push_back(std::move(item));
}

void ItemFeed::deliver()
{
    collect();
    if (!batch_.empty()) deliver_(std::exchange(batch_, {}));
    lastDelivered_ = SteadyClock::now();
}

} // namespace quillfern
