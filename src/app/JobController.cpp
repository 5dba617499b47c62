#include "app/JobController.h"

#include "app/Activity.h"
#include "app/WindowFocus.h"
#include "batch/Job.h"
#include "platform/system/Guarded.h"
#include "platform/system/StartedThread.h"

#include <QCoreApplication>
#include <QDeadlineTimer>

namespace quillfern {

JobController::JobController(FileList& files, Settings& settings, Activity& activity,
                             ProcessServices services, desktop::Alerts& alerts, QWidget& parent)
    : files_(files), settings_(settings), activity_(activity), services_(std::move(services)),
      alerts_(alerts), parent_(parent)
{
}

JobController::~JobController()
{
    while (!stop(1000)) {
    }
}

bool JobController::stop(int milliseconds)
{
    if (!worker_) return true;
    process_->stop();
    if (waitForEnd(milliseconds)) return true;
    process_->abandon();
    return waitForEnd(1000);
}

bool JobController::waitForEnd(int milliseconds) const
{
    // The worker may itself be waiting for this thread to run something.
    const QDeadlineTimer deadline(milliseconds);
    while (!worker_->wait(10)) {
        QCoreApplication::sendPostedEvents(QCoreApplication::instance(), QEvent::MetaCall);
        if (deadline.hasExpired()) return false;
    }
    return true;
}

void JobController::combine()
{
    if (!activity_.isIdle()) return;
    guarded("Error in (combine) : %@", [&] {
        endEditing(parent_);
        try {
            requireOutputFolder(settings_.outputFolderPath);
        } catch (const Failure& failure) {
            alerts_.critical(&parent_, failure.reasons().shown);
            Q_EMIT outputFolderRefused();
            return;
        }
        try {
            requireResources();
        } catch (const Failure& failure) {
            alerts_.critical(&parent_, failure.reasons().shown);
            return;
        }
        Q_EMIT starting();
        activity_.begin(Activity::State::Job);
        launch(planJob(files_.copies(), settings_));
    });
    if (!worker_) activity_.end(Activity::State::Job); // nothing was started
}

void JobController::launch(Job job)
{
    process_ = std::make_unique<Process>(services_, std::move(job), *this);
    if (!processViewPanel_) {
        processViewPanel_ = std::make_unique<ProgressSheet>(&parent_);
        connect(processViewPanel_.get(), &ProgressSheet::cancelRequested, this,
                &JobController::cancelProcessAction);
        connect(processViewPanel_.get(), &ProgressSheet::viewLogRequested, this,
                &JobController::viewLogAction);
        connect(processViewPanel_.get(), &ProgressSheet::quitRequested, this, &JobController::leave);
        connect(processViewPanel_.get(), &ProgressSheet::closeRequested, this,
                &JobController::closeProcessAction);
    }
    std::vector<std::int32_t> pages;
    for (const FileItem* item : files_.items())
        pages.push_back(item->pages());
    processViewPanel_->follow(*process_, pages);
    try {
        worker_ = startedThread([process = process_.get()] { process->start(); },
                                [this](const QThread& thread) {
                                    connect(&thread, &QThread::finished, this, &JobController::completed);
                                });
    } catch (...) {
        const Reason reason = currentReason();
        processViewPanel_->forget();
        process_.reset();
        alerts_.critical(&parent_, reason.shown);
        throw; // for the system log
    }
    processViewPanel_->open();
}

void JobController::updateTimeTakenLabel(const QString& text)
{
    Q_EMIT timeTakenChanged(text);
}

void JobController::outputFinished(const LogFiles& record)
{
    processViewPanel_->outputFinished(record);
}

void JobController::completed()
{
    processViewPanel_->showCompleted();
}

void JobController::cancelProcessAction()
{
    if (!process_) return;
    if (process_->isCombining()) {
        stopAfterFile();
    } else if (!process_->isCompleted()) {
        process_->abandon();
        processViewPanel_->showAbandoning();
    }
}

void JobController::stopAfterFile()
{
    process_->stop();
    processViewPanel_->showCancelling();
}

void JobController::leave()
{
    const bool isRunning = process_ && !process_->isCompleted();
    if (isRunning &&
        !alerts_.confirm(
            processViewPanel_.get(),
            tr("A job is running. Stop it and quit? A file that is not done within a few seconds is "
               "given up.")))
        return;
    if (isRunning && process_->isCombining()) stopAfterFile();
    Q_EMIT quitRequested();
}

void JobController::viewLogAction()
{
    if (process_) process_->viewLog();
}

void JobController::closeProcessAction()
{
    if (!worker_ || !process_->isCompleted()) return;
    processViewPanel_->hide();
    processViewPanel_->forget();
    worker_->wait();
    worker_.reset();
    if (settings_.isClearProcessedFiles) {
        std::vector<int> checked;
        for (int row = 0; row < files_.count(); ++row)
            if (files_.at(row).isSelected()) checked.push_back(row);
        files_.remove(checked);
        Q_EMIT itemsRemoved();
    }
    activity_.end(Activity::State::Job);
    process_.reset();
}

} // namespace quillfern
