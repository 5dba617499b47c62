#pragma once

#include <QDateTime>

namespace quillfern {

/// Where the present moment comes from. An interface, so that tests can set the time.
class Clock
{
  public:
    virtual ~Clock() = default;
    /// The present moment in the user's time zone. May be called from any thread.
    [[nodiscard]] virtual QDateTime now() const = 0;
};

class SystemClock final : public Clock
{
  public:
    [[nodiscard]] QDateTime now() const override { return QDateTime::currentDateTime(); }
};

} // namespace quillfern
