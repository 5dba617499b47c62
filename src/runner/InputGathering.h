#pragma once

#include "filelist/FileGatherer.h"
#include "runner/RunnerOptions.h"

namespace quillfern {

/// What has to be gathered for a command line, in its order: files as they are, folders walked, then the
/// files of the lists. Throws WrongUse for an input that is not there or is no file to stamp, and for a list
/// that cannot be read or names nothing.
[[nodiscard]] std::vector<Arguments> requestsFor(const RunnerOptions& options);

/// Gathers for a program without a window. Main thread.
class InputGathering final : private GatherObserver
{
  public:
    /// The references outlive this.
    InputGathering(FileList& files, MainThread& mainThread, const Clock& clock)
        : gatherer_(files, isProcessing_, mainThread, clock, *this)
    {
    }

    /// Carries the requests out one after the other. `goOn` is asked now and then, and ends it.
    void gather(const std::vector<Arguments>& requests, const std::function<bool()>& goOn);

  private:
    void resetViewObject(bool) override {}
    void startProcess() override {}
    void stopProcess() override {}
    void updateTimeTakenLabel(const QString&) override {}

    std::atomic<bool> isProcessing_ = false;
    FileGatherer gatherer_;
};

} // namespace quillfern
