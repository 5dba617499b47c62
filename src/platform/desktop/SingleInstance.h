#pragma once

#include "platform/system/FilePath.h"

#include <QDBusConnection>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

namespace quillfern::desktop {

/// Makes the program run once in a desktop session: the first instance takes the program's name on the
/// session bus and answers as org.freedesktop.Application does; a later one hands over what it was asked to
/// open. Every wait for another process ends after `patienceMs`. Where there is no bus, or no instance
/// answers on it, nothing is handed over and each instance runs by itself. Belongs to one thread, which
/// serves events in the first instance.
class SingleInstance final : public QObject
{
    Q_OBJECT

  public:
    /// Takes the name unless another instance has it. Requests that arrive from then on are emitted as
    /// signals once the thread serves events.
    SingleInstance(QDBusConnection bus, QString service, int patienceMs = 2000);
    /// Calls leave().
    ~SingleInstance() override;

    [[nodiscard]] bool isFirst() const { return isFirst_; }

    /// Asks the first instance to come to the front and to open files and folders, `activationToken` allows
    /// it to take the keyboard; it may be empty. True once the first instance has answered. Otherwise this
    /// instance queues for the name and gets it when the present owner gives it back.
    [[nodiscard]] bool handOver(const QList<FilePath>& paths, const QString& activationToken = QString());

    /// Gives the name back and refuses requests that are still on their way: the instances that sent them
    /// then run by themselves. For an instance that is about to end.
    void leave();

  Q_SIGNALS:
    /// Another instance was started with these files and folders, possibly none.
    void opened(const QList<FilePath>& paths, const QString& activationToken);

  private:
    class Interface;
    bool takeName();
    void queueForName();
    [[nodiscard]] bool send(const QStringList& uris, const QString& activationToken);
    [[nodiscard]] QString objectPath() const;

    QDBusConnection bus_;
    QString service_;
    int patienceMs_;
    bool isFirst_ = false;
    bool hasLeft_ = false;
};

} // namespace quillfern::desktop
