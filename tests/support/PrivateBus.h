#pragma once

#include "support/Cases.h"

#include <QDBusConnection>
#include <QProcess>
#include <QStringList>

namespace quillfern {

/// A session bus of the test's own, which ends with this object.
class PrivateBus
{
  public:
    PrivateBus();
    ~PrivateBus();

    [[nodiscard]] const QString& address() const { return address_; }
    /// A connection of its own name; not connected when there is no bus.
    [[nodiscard]] QDBusConnection connect(const char* name);

  private:
    QProcess daemon_;
    QString address_;
    QStringList connections_;
};

} // namespace quillfern
