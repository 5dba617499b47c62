#pragma once

#include "app/StampsModel.h"
#include "config/Numbering.h"
#include "config/Settings.h"
#include "config/StampListOperations.h"
#include "dialogs/StampEditors.h"
#include "dialogs/StampHost.h"
#include "platform/desktop/Alerts.h"
#include "platform/desktop/FilePanels.h"
#include "stamps/IStampItem.h"
#include "stamps/StampList.h"

#include <QObject>
#include <memory>
#include <vector>

namespace quillfern {

class Activity;
class StampsPane;
class WindowActions;

/// Connects the list of stamps with the window: its table, its commands, the editors and the profiles. Main
/// thread.
class StampsController final : public QObject, public StampHost
{
    Q_OBJECT

  public:
    /// Everything outlives the controller. While a job runs no stamp can be edited.
    StampsController(Numbering& number, const Activity& activity, StampsPane& pane,
                     const WindowActions& actions, desktop::FilePanels& panels, desktop::Alerts& alerts);
    ~StampsController() override;

    /// Shows the stamps as they are now, with the selection as it was.
    void reload();
    void selectFirstStamp();
    [[nodiscard]] std::vector<int> selection() const;
    /// The first selected row; -1 for none.
    [[nodiscard]] int selectedStamp() const;

  Q_SIGNALS:
    void selectionChanged();
    /// The picture has to be drawn anew, for another reason than a change of which the configuration
    /// notifies.
    void renderRequested();
    /// A profile has replaced the configuration.
    void profileLoaded();

  private:
    void connectTable();
    void connectCommands();
    void textStampAction();
    void imageStampAction();
    void stampDoubleAction();
    void removeStampAction();
    void stampSaveAction();
    void stampLoadAction();
    void edit(const std::shared_ptr<IStampItem>& stamp);
    void show(const RowSelection& selection, bool takeFocus = false);
    void updateCommands();
    void forgetEdited(const IStampItem& stamp);

    void addStamp(IStampItem& stamp) override;
    void removeStamp(IStampItem& stamp) override;
    void stampRenamed(IStampItem& stamp) override;

    Numbering& number_;
    StampsPane& pane_;
    const WindowActions& actions_;
    desktop::FilePanels& panels_;
    desktop::Alerts& alerts_;
    StampsModel model_;
    StampListOperations operations_;
    StampEditors editors_;
    StampList tempStamps_; ///< new stamps, kept alive for their editors until they are added
};

} // namespace quillfern
