#pragma once

#include <QByteArray>
#include <QCoreApplication> // QT_TRANSLATE_NOOP, with which texts for a Reason are marked
#include <QString>
#include <QStringList>
#include <exception>

namespace quillfern {

/// Why something failed, as the logs have it and as windows show it: a sentence in plain words. Made from one
/// of our own texts, which is in English in the logs and in the user's language in a window, or from what a
/// library or the system says.
struct Reason
{
    /// `text` is a literal, marked with QT_TRANSLATE_NOOP("quillfern::Failure", "…"); the parts stand in
    /// place of its "%1" and "%2".
    Reason(const char* text, const QStringList& parts = {});
    /// The words of a library or the system, in whatever language they are.
    Reason(const QString& said) : logged(said), shown(said) {}

    /// `text`, as above, with another reason in place of its "%1".
    [[nodiscard]] static Reason quoting(const char* text, const Reason& part);

    /// "<this> <next>", of two sentences.
    [[nodiscard]] Reason followedBy(const Reason& next) const;

    /// "<this>: <said>" in the logs, for the words of a library, which help nobody in a window.
    [[nodiscard]] Reason with(const QString& said) const;

    QString logged;
    QString shown;
};

/// The one exception type that crosses an adapter's border. Third-party exceptions and error codes are
/// translated into it where they arise; its reason is a sentence fit for a log line or a person's eyes.
class Failure : public std::exception
{
  public:
    explicit Failure(Reason reason);

    /// For logs and other files: never in another language.
    [[nodiscard]] const QString& reason() const { return reason_.logged; }
    /// In English for logs and in the user's language for windows.
    [[nodiscard]] const Reason& reasons() const { return reason_; }
    [[nodiscard]] const char* what() const noexcept override { return utf8_.constData(); }

    /// "<doing>: <text of the errno value>", for a system call that failed. `doing` is a sentence.
    static Failure fromErrno(const Reason& doing, int errorNumber);
    /// For want of memory.
    static Failure ofMemory(const Reason& reason);

    /// Whether something was short (memory, room on the disk, open files) that other work may have held: the
    /// same could succeed later.
    [[nodiscard]] bool isShortage() const { return isShortage_; }

  private:
    Reason reason_;
    QByteArray utf8_;
    bool isShortage_ = false;
};

/// A command or a command line that cannot be followed as it is; nothing was done. The reason is one sentence
/// for the person who gave it.
class WrongUse final : public Failure
{
  public:
    using Failure::Failure;
};

/// The reason of the exception now being handled, whatever its type. Call inside a catch block only.
[[nodiscard]] Reason currentReason();
/// The same, for logs.
[[nodiscard]] QString reasonOfCurrentException();
/// Whether the exception now being handled is one of shortage, whatever its type.
[[nodiscard]] bool isCurrentExceptionShortage();

} // namespace quillfern
