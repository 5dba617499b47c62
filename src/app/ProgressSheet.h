#pragma once

#include "app/JobResultsModel.h"
#include "batch/Log.h"

#include <QDialog>
#include <QElapsedTimer>
#include <QString>
#include <QTimer>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

namespace quillfern {

namespace Ui {
class ProgressSheet;
}

class Process;

/// The sheet over the main window that shows a running job and then its results. The sheet reads the job's
/// progress a few times a second and never stops a job by itself. Main thread.
class ProgressSheet final : public QDialog
{
    Q_OBJECT

  public:
    explicit ProgressSheet(QWidget* parent);
    ~ProgressSheet() override;

    /// Shows a job from its start. `pages` are the page counts of its outputs, in order. The job
    /// must live until forget().
    void follow(const Process& process, const std::vector<std::int32_t>& pages);
    /// One output is done; called in their order.
    void outputFinished(const LogFiles& record);
    /// The job has come to its end: the result is shown and the sheet can be closed.
    void showCompleted();
    /// The user asked the job to stop: the button Cancel becomes Stop Now, which can be pressed a moment
    /// later.
    void showCancelling();
    /// The user pressed Stop Now.
    void showAbandoning();
    /// The job is about to be deleted: the sheet no longer reads it.
    void forget();

    [[nodiscard]] const JobResultsModel& results() const { return *results_; }

  Q_SIGNALS:
    void quitRequested();   ///< leave the program
    void cancelRequested(); ///< by Cancel, and again by Stop Now
    void viewLogRequested();
    void closeRequested();

  protected:
    /// For Escape and the window's close button; the sheet of a running job is not closed.
    void reject() override;

  private:
    void offerCancel();
    void offerStopNow();
    void showWarnings(const std::vector<Reason>& warnings);
    void update();
    void showResults();
    [[nodiscard]] std::int64_t pagesDone() const;
    [[nodiscard]] QString remainingText(std::int64_t done) const;

    std::unique_ptr<Ui::ProgressSheet> ui_;
    const Process* process_ = nullptr;
    JobResultsModel* results_ = nullptr; ///< of the present job; owned through Qt
    std::vector<std::int32_t> pages_;
    std::size_t finished_ = 0;                  ///< outputs done
    std::vector<JobResultsModel::Row> unshown_; ///< of these
    std::int64_t totalPages_ = 0;
    std::int64_t finishedPages_ = 0; ///< of the outputs done
    QElapsedTimer elapsed_;
    QTimer poll_;
    QTimer stopNow_;
    bool isCompleted_ = true;
};

/// A number of seconds as "0:07", "12:30" or "1:02:03".
[[nodiscard]] QString clockText(std::int64_t seconds);

} // namespace quillfern
