#include "app/ProgressSheet.h"

#include "app/TableRows.h"
#include "batch/JobWarnings.h"
#include "batch/Process.h"
#include "dialogs/KeyHint.h"
#include "dialogs/ThemedIcon.h"
#include "platform/system/NativePath.h"
#include "ui_ProgressSheet.h"

#include <QHeaderView>
#include <QScrollBar>
#include <QShortcut>
#include <QStyle>
#include <algorithm>
#include <numeric>

namespace quillfern {

namespace {

constexpr int lookEveryMs = 100;
constexpr int stopNowAfterMs = 700;      ///< so that a double click on Cancel does not give up the file
constexpr qint64 estimateAfterMs = 1500; ///< an estimate from a shorter time would change too much

} // namespace

QString clockText(std::int64_t seconds)
{
    const QString tail = QStringLiteral("%1:%2")
                             .arg(seconds / 60 % 60, seconds >= 3600 ? 2 : 1, 10, QLatin1Char('0'))
                             .arg(seconds % 60, 2, 10, QLatin1Char('0'));
    return seconds < 3600 ? tail : QStringLiteral("%1:%2").arg(seconds / 3600).arg(tail);
}

ProgressSheet::ProgressSheet(QWidget* parent) : QDialog(parent), ui_(std::make_unique<Ui::ProgressSheet>())
{
    ui_->setupUi(this);
    setWindowModality(Qt::WindowModal);
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowTitle(tr("Stamping Files"));

    QTableView& table = *ui_->results;
    setUpTable(table);
    table.setTextElideMode(Qt::ElideMiddle); // a remark begins with what failed and ends with why
    table.horizontalHeader()->setStretchLastSection(true);

    setButtonKeyCharacter(*ui_->viewLogBtn, QStringLiteral("l"), QColor());
    offerCancel();
    connect(ui_->cancelProcessBtn, &QPushButton::clicked, this, &ProgressSheet::cancelRequested);
    connect(ui_->viewLogBtn, &QPushButton::clicked, this, &ProgressSheet::viewLogRequested);
    connect(ui_->closeProcessBtn, &QPushButton::clicked, this, &ProgressSheet::closeRequested);
    auto* leave = new QShortcut(QKeySequence(Qt::CTRL | Qt::Key_Q), this); // the window's own is blocked
    connect(leave, &QShortcut::activated, this, &ProgressSheet::quitRequested);
    poll_.setInterval(lookEveryMs);
    connect(&poll_, &QTimer::timeout, this, &ProgressSheet::update);
    stopNow_.setSingleShot(true);
    stopNow_.setInterval(stopNowAfterMs);
    connect(&stopNow_, &QTimer::timeout, this, &ProgressSheet::offerStopNow);
}

ProgressSheet::~ProgressSheet() = default;

void ProgressSheet::follow(const Process& process, const std::vector<std::int32_t>& pages)
{
    process_ = &process;
    pages_ = pages;
    const auto sum = [](std::int64_t total, std::int32_t count) { return total + std::max(count, 0); };
    totalPages_ = std::accumulate(pages.begin(), pages.end(), std::int64_t{0}, sum);
    finished_ = 0;
    unshown_.clear();
    finishedPages_ = 0;
    isCompleted_ = false;

    delete results_;
    results_ = new JobResultsModel(this);
    ui_->results->setModel(results_);
    const int letter = fontMetrics().averageCharWidth();
    ui_->results->setColumnWidth(JobResultsModel::FileColumn, letter * 34);
    ui_->results->setColumnWidth(JobResultsModel::PagesColumn, letter * 9);
    ui_->results->setColumnWidth(JobResultsModel::StatusColumn, letter * 18);

    ui_->headline->setText(tr("Stamping files…"));
    ui_->message->setText(tr("Cancel stops once the current file is done."));
    showWarnings({});
    offerCancel();
    ui_->viewLogBtn->setEnabled(false);
    ui_->closeProcessBtn->setEnabled(false);
    elapsed_.start();
    update();
    poll_.start();
}

void ProgressSheet::outputFinished(const LogFiles& record)
{
    // The worker waits for this call. Rows are therefore collected and shown a few times a second.
    if (finished_ < pages_.size()) finishedPages_ += std::max(pages_[finished_], 0);
    ++finished_;
    unshown_.push_back(
        {readableName(record.filename), record.pages, record.outcome, record.source.readable()});
}

void ProgressSheet::showResults()
{
    if (unshown_.empty()) return;
    // Scroll to new rows, unless the user has scrolled away from the last one.
    const QScrollBar* bar = ui_->results->verticalScrollBar();
    const bool isAtEnd = bar->value() == bar->maximum();
    results_->append(std::exchange(unshown_, {}));
    if (isAtEnd) ui_->results->scrollToBottom();
}

std::int64_t ProgressSheet::pagesDone() const
{
    return std::clamp<std::int64_t>(finishedPages_ + process_->pagesInWork(), 0, totalPages_);
}

QString ProgressSheet::remainingText(std::int64_t done) const
{
    if (isCompleted_) return QStringLiteral("–");
    if (elapsed_.elapsed() < estimateAfterMs || done == 0) return tr("estimating…");
    const double perPage = static_cast<double>(elapsed_.elapsed()) / static_cast<double>(done);
    const auto seconds =
        static_cast<std::int64_t>(perPage * static_cast<double>(totalPages_ - done) / 1000.0);
    return tr("about %1").arg(clockText(seconds + 1));
}

void ProgressSheet::update()
{
    if (!process_) return;
    showResults();
    const QLocale locale;
    const std::int64_t done = pagesDone();
    if (!isCompleted_) {
        const QString file = readableName(process_->outputFileInProcess());
        const int room = std::max(ui_->fileInProcess->width(), 200);
        ui_->fileInProcess->setText(fontMetrics().elidedText(file, Qt::ElideMiddle, room));
        ui_->elapsed->setText(clockText(elapsed_.elapsed() / 1000));
    }
    ui_->filesDone->setText(
        tr("%1 of %2")
            .arg(locale.toString(qulonglong(finished_)), locale.toString(qlonglong(pages_.size()))));
    ui_->pagesDone->setText(
        tr("%1 of %2").arg(locale.toString(qlonglong(done)), locale.toString(qlonglong(totalPages_))));
    ui_->remaining->setText(remainingText(done));
    const double part = totalPages_ > 0 ? static_cast<double>(done) / static_cast<double>(totalPages_) : 1.0;
    ui_->bar->setValue(static_cast<int>(part * ui_->bar->maximum()));
}

void ProgressSheet::offerCancel()
{
    stopNow_.stop();
    ui_->cancelProcessBtn->setText(tr("Cancel"));
    ui_->cancelProcessBtn->setToolTip(tr("Stop once the current file is done; the files done so far stay"));
    setButtonKeyCharacter(*ui_->cancelProcessBtn, QStringLiteral("c"), QColor());
    ui_->cancelProcessBtn->setEnabled(true);
}

void ProgressSheet::offerStopNow()
{
    ui_->cancelProcessBtn->setEnabled(true);
}

void ProgressSheet::showCancelling()
{
    ui_->cancelProcessBtn->setEnabled(false);
    ui_->cancelProcessBtn->setText(tr("Stop Now"));
    ui_->cancelProcessBtn->setToolTip(tr("Give up the current file as well; nothing of its copy remains"));
    setButtonKeyCharacter(*ui_->cancelProcessBtn, QStringLiteral("s"), QColor());
    ui_->message->setText(tr("Stopping: the current file is finished first… Stop Now gives that file up."));
    stopNow_.start();
}

void ProgressSheet::showAbandoning()
{
    ui_->cancelProcessBtn->setEnabled(false);
    ui_->message->setText(tr("Stopping: the current file is given up…"));
}

void ProgressSheet::showWarnings(const std::vector<Reason>& warnings)
{
    QStringList lines;
    for (const Reason& warning : warnings)
        lines.append(warning.shown);
    ui_->warnings->setText(lines.join(u'\n'));
    ui_->warnings->setTextFormat(Qt::PlainText); // names of files may look like markup
    const int side = style()->pixelMetric(QStyle::PM_SmallIconSize);
    ui_->warningsIcon->setPixmap(themedIcon(QStringLiteral("warning")).pixmap(side));
    ui_->warnings->setVisible(!lines.isEmpty());
    ui_->warningsIcon->setVisible(!lines.isEmpty());
}

void ProgressSheet::showCompleted()
{
    if (!process_) return;
    isCompleted_ = true;
    poll_.stop();
    stopNow_.stop();
    update();
    ui_->headline->setText(tr("Finished"));
    ui_->fileInProcess->clear();
    ui_->message->setText(QString(process_->message()).replace(QStringLiteral("\r\n"), QStringLiteral("\n")));
    showWarnings(jobWarnings(process_->log().files));
    ui_->cancelProcessBtn->setEnabled(false);
    ui_->viewLogBtn->setEnabled(true);
    ui_->closeProcessBtn->setEnabled(true);
    ui_->closeProcessBtn->setFocus();
}

void ProgressSheet::forget()
{
    poll_.stop();
    stopNow_.stop();
    process_ = nullptr;
}

void ProgressSheet::reject()
{
    if (isCompleted_) Q_EMIT closeRequested();
}

} // namespace quillfern
