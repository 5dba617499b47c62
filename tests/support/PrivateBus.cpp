#include "support/PrivateBus.h"

namespace quillfern {

PrivateBus::PrivateBus()
{
    daemon_.start(QStringLiteral("dbus-daemon"), {QStringLiteral("--session"), QStringLiteral("--nofork"),
                                                  QStringLiteral("--print-address")});
    if (daemon_.waitForReadyRead()) address_ = QString::fromUtf8(daemon_.readLine()).trimmed();
}

PrivateBus::~PrivateBus()
{
    for (const QString& name : connections_)
        QDBusConnection::disconnectFromBus(name);
    daemon_.terminate();
    daemon_.waitForFinished();
}

QDBusConnection PrivateBus::connect(const char* name)
{
    connections_.append(QString::fromLatin1(name));
    return QDBusConnection::connectToBus(address_, connections_.constLast());
}

} // namespace quillfern
