#pragma once

#include "filelist/Arguments.h"
#include "filelist/FileGatherer.h"
#include "filelist/FileList.h"
#include "filelist/GatherObserver.h"
#include "platform/system/Clock.h"
#include "platform/system/MainThread.h"
#include "runner/RunnerOptions.h"

#include <QString>
#include <atomic>
#include <functional>
#include <memory>
#include <vector>

namespace quillfern {

/// The requests for the inputs of a command line, in their order (files are taken as they are, folders are
/// walked), and then for the files of the lists. While the standard input is read, `goOn` is called now and
/// then; when it returns false, the lines that have come by then are the list. Throws WrongUse for an input
/// that does not exist or cannot be stamped, and for a list that cannot be read or names no file that can be
/// stamped. What is to be said about lines that were left out of a list is appended to `remarks`.
[[nodiscard]] std::vector<Arguments>
requestsFor(const RunnerOptions& options, const std::function<bool()>& goOn, std::vector<Remark>& remarks);

/// Gathers files for a program without a window. Main thread.
class InputGathering final : private GatherObserver
{
  public:
    /// The references must outlive this object.
    InputGathering(FileList& files, MainThread& mainThread, const Clock& clock)
        : gatherer_(files, isProcessing_, mainThread, clock, *this)
    {
    }

    /// Files whose pages are known are not read.
    void setKnownCounts(std::shared_ptr<const KnownCounts> known)
    {
        gatherer_.setKnownCounts(std::move(known));
    }

    /// Carries out the requests one after the other. `goOn` is called now and then; gathering ends when it
    /// returns false.
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
