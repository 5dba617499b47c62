#include "app/GatherController.h"

#include "app/Activity.h"

namespace quillfern {

GatherController::GatherController(FileList& files, Settings& settings, Activity& activity,
                                   MainThread& mainThread, const Clock& clock)
    : settings_(settings), activity_(activity), gatherer_(files, isWanted_, mainThread, clock, *this)
{
}

bool GatherController::load(const QList<FilePath>& paths, bool isFolders, bool includeSubfolders)
{
    if (paths.isEmpty() || !activity_.isIdle()) return false;
    return gatherer_.start({paths, isFolders, includeSubfolders}, settings_.pdfOpenPassword);
}

void GatherController::applyPassword(const QList<FilePath>& paths, const QString& password)
{
    if (!activity_.isJob()) gatherer_.startPasswords(paths, password);
}

void GatherController::cancel()
{
    isWanted_ = false;
}

void GatherController::resetViewObject(bool idle)
{
    if (idle)
        activity_.end(Activity::State::Gathering);
    else
        activity_.begin(Activity::State::Gathering);
}

} // namespace quillfern
