#pragma once

#include "config/Settings.h"
#include "filelist/FileGatherer.h"
#include "filelist/FileList.h"
#include "filelist/GatherObserver.h"
#include "platform/system/Clock.h"
#include "platform/system/FilePath.h"
#include "platform/system/MainThread.h"

#include <QList>
#include <QObject>
#include <QString>
#include <atomic>

namespace quillfern {

class Activity;

/// Gathers files for the list in the background and shows that as the window's activity. Main thread.
class GatherController final : public QObject, private GatherObserver
{
    Q_OBJECT

  public:
    /// Everything outlives the controller. New files get the settings' password.
    GatherController(FileList& files, Settings& settings, Activity& activity, MainThread& mainThread,
                     const Clock& clock);

    /// Begins to add files and folders to the list. False when that is not possible now.
    bool load(const QList<FilePath>& paths, bool isFolders, bool includeSubfolders);
    /// Gives files of the list a password and counts their pages anew; nothing happens while a job runs.
    void applyPassword(const QList<FilePath>& paths, const QString& password);
    /// Ends the request that is running; files that are in the list by then stay.
    void cancel();
    /// Ends the request that is running, prevents further ones, and waits at most so long. True when nothing
    /// runs any more.
    bool stop(int milliseconds) { return gatherer_.stop(milliseconds); }

  Q_SIGNALS:
    /// Files were added to the list.
    void listGrew();
    /// The text for the label that shows the time.
    void timeTakenChanged(const QString& text);

  private:
    void resetViewObject(bool idle) override;
    void startProcess() override {} // the window's controls follow the activity
    void stopProcess() override {}
    void updateTimeTakenLabel(const QString& text) override { Q_EMIT timeTakenChanged(text); }
    void filesAdded() override { Q_EMIT listGrew(); }

    Settings& settings_;
    Activity& activity_;
    std::atomic<bool> isWanted_ = false; ///< read by the gatherer's threads; cleared to stop them
    FileGatherer gatherer_;
};

} // namespace quillfern
