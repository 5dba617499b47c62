#pragma once

#include "platform/desktop/Alerts.h"
#include "platform/desktop/DesktopServices.h"
#include "platform/desktop/FilePanels.h"
#include "platform/store/DefaultsStore.h"
#include "platform/system/Clock.h"
#include "platform/system/Failure.h"
#include "platform/system/Folders.h"
#include "platform/system/MainThread.h"

#include "support/Paths.h"

#include <QStringList>
#include <map>

namespace quillfern {

/// Returns the time that was set; each call of now() moves it forward by `step`.
class FakeClock final : public Clock
{
  public:
    explicit FakeClock(QDateTime start = QDateTime(QDate(2026, 11, 16), QTime(14, 5, 9)))
        : now_(std::move(start))
    {
    }

    [[nodiscard]] QDateTime now() const override
    {
        const QDateTime moment = now_;
        now_ = now_.addMSecs(step);
        return moment;
    }
    void set(const QDateTime& moment) { now_ = moment; }

    qint64 step = 0; ///< milliseconds

  private:
    mutable QDateTime now_;
};

class FakeFolders final : public Folders
{
  public:
    explicit FakeFolders(const QString& base) : base_(asPath(base)) {}

    [[nodiscard]] FilePath applicationSupport() const override { return base_; }
    [[nodiscard]] FilePath configuration() const override { return base_; }

  private:
    FilePath base_;
};

/// Runs everything where it is called.
class SameThread final : public MainThread
{
  public:
    void postAndWait(const std::function<void()>& work) override { work(); }
};

class FakeDesktop final : public desktop::DesktopServices
{
  public:
    void open(const FilePath& path) override { opened.append(path.text()); }
    void reveal(const QList<FilePath>& paths) override { revealed.append(textsOf(paths)); }
    void showProperties(const QList<FilePath>& paths) override { shownProperties.append(textsOf(paths)); }

    QStringList opened;
    QList<QStringList> revealed; ///< one entry a request
    QList<QStringList> shownProperties;
};

/// Answers each panel at once with what `answers` holds, in turn; without an answer the user closed the
/// panel.
class FakePanels final : public desktop::FilePanels
{
  public:
    void open(QObject*, const desktop::OpenPanel& panel,
              std::function<void(const QList<FilePath>&)> chosen) override
    {
        opened.append(panel);
        if (!answers.isEmpty()) chosen(asPaths(answers.takeFirst()));
    }
    void save(QObject*, const desktop::SavePanel& panel, std::function<void(const FilePath&)> chosen) override
    {
        saved.append(panel);
        if (!answers.isEmpty()) chosen(asPath(answers.takeFirst().value(0)));
    }

    QList<QStringList> answers;
    QList<desktop::OpenPanel> opened;
    QList<desktop::SavePanel> saved;
};

class FakeAlerts final : public desktop::Alerts
{
  public:
    void critical(QObject*, const QString& message) override { criticals.append(message); }
    void information(QObject*, const QString& message) override { informations.append(message); }
    [[nodiscard]] bool confirm(QObject*, const QString& message) override
    {
        questions.append(message);
        return answer;
    }

    [[nodiscard]] desktop::QuitChoice chooseToQuit(QObject*, const QString& message) override
    {
        questions.append(message);
        return quitChoices.isEmpty() ? desktop::QuitChoice::QuitAnyway : quitChoices.takeFirst();
    }

    bool answer = true;                     ///< to every question
    QList<desktop::QuitChoice> quitChoices; ///< in turn
    QStringList criticals;
    QStringList informations;
    QStringList questions;
};

class MemoryDefaults final : public store::DefaultsStore
{
  public:
    [[nodiscard]] std::optional<store::RecordValue> value(const QString& key) const override
    {
        const auto found = values.find(key);
        return found == values.end() ? std::nullopt : std::optional(found->second);
    }
    void setValue(const QString& key, store::RecordValue value) override
    {
        values.insert_or_assign(key, std::move(value));
    }
    void flush() override
    {
        if (failures > 0) {
            --failures;
            throw Failure(u"no space left"_s);
        }
        ++flushes;
    }

    int failures = 0; ///< how many of the next flushes fail

    std::map<QString, store::RecordValue> values;
    int flushes = 0;
};

} // namespace quillfern
