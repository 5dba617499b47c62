#pragma once

#include <QString>
#include <exception>

namespace quillfern {

/// The one exception type that crosses an adapter's border. Third-party exceptions and error codes are
/// translated into it where they arise; its reason is a sentence fit for a log line or a person's eyes.
class Failure : public std::exception
{
  public:
    explicit Failure(QString reason);

    [[nodiscard]] const QString& reason() const { return reason_; }
    [[nodiscard]] const char* what() const noexcept override { return utf8_.constData(); }

    /// "<doing>: <text of the errno value>", for a system call that failed.
    static Failure fromErrno(const QString& doing, int errorNumber);

  private:
    QString reason_;
    QByteArray utf8_;
};

/// The reason of the exception now being handled, whatever its type. Call inside a catch block only.
[[nodiscard]] QString reasonOfCurrentException();

} // namespace quillfern
