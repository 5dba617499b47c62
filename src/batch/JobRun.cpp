#include "batch/JobRun.h"

#include "platform/system/Cancellation.h"

namespace quillfern {

JobRun::JobRun(const JobConfiguration& job, PageProgress progress, std::stop_token abandon)
    : stamps_(job.startNumber), numberSteps_(job.numberSteps), progress_(std::move(progress)),
      abandon_(std::move(abandon))
{
}

JobRun::JobRun(const JobConfiguration& job, StampRun start, PageProgress progress, std::stop_token abandon)
    : stamps_(std::move(start)), numberSteps_(job.numberSteps), progress_(std::move(progress)),
      abandon_(std::move(abandon))
{
}

void JobRun::numberUsed()
{
    if (!numbers_) numbers_ = NumbersUsed{stamps_.numberCounter, stamps_.numberCounter};
    numbers_->last = stamps_.numberCounter;
    stamps_.numberCounter += numberSteps_;
}

void JobRun::pageDone() const
{
    throwIfCancelled(abandon_);
    if (progress_) progress_();
}

void JobRun::beginUpdate()
{
    numbers_.reset();
    isUpdating_ = true;
}

} // namespace quillfern
