#include "support/PrivateBus.h"

namespace quillfern {

PrivateBus::PrivateBus()
{
    daemon_.start(u"dbus-daemon"_s, {u"--session"_s, u"--nofork"_s, u"--print-address"_s});
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
