#include "platform/system/Failure.h"

#include <cerrno>
#include <cstring>
#include <new>
#include <system_error>

namespace quillfern {

namespace {

QString filled(QString text, const QStringList& parts)
{
    if (parts.size() == 1) return text.arg(parts[0]);
    if (parts.size() == 2) return text.arg(parts[0], parts[1]); // at once: a part may hold a "%2" itself
    return text;
}

/// "<sentence>: <said>"
QString continued(QString sentence, const QString& said)
{
    if (sentence.endsWith(u'.')) sentence.chop(1);
    return sentence + QStringLiteral(": ") + said;
}

} // namespace

Reason::Reason(const char* text, const QStringList& parts)
    : logged(filled(QString::fromUtf8(text), parts)),
      shown(filled(QCoreApplication::translate("quillfern::Failure", text), parts))
{
}

Reason Reason::quoting(const char* text, const Reason& part)
{
    Reason reason(text, {part.logged});
    reason.shown = filled(QCoreApplication::translate("quillfern::Failure", text), {part.shown});
    return reason;
}

Reason Reason::followedBy(const Reason& next) const
{
    Reason both = *this;
    both.logged += u' ' + next.logged;
    both.shown += u' ' + next.shown;
    return both;
}

Reason Reason::with(const QString& said) const
{
    Reason more = *this;
    more.logged = continued(logged, said);
    return more;
}

Failure::Failure(Reason reason) : reason_(std::move(reason)), utf8_(reason_.logged.toUtf8())
{
}

Failure Failure::fromErrno(const Reason& doing, int errorNumber)
{
    const QString said = QString::fromLocal8Bit(std::strerror(errorNumber));
    Reason reason = doing;
    reason.logged = continued(doing.logged, said);
    reason.shown = continued(doing.shown, said) + u'.';
    Failure failure(reason);
    for (const int shortage : {ENOSPC, EDQUOT, ENOMEM, EMFILE, ENFILE, EAGAIN})
        failure.isShortage_ = failure.isShortage_ || errorNumber == shortage;
    return failure;
}

Failure Failure::ofMemory(const Reason& reason)
{
    Failure failure(reason);
    failure.isShortage_ = true;
    return failure;
}

Reason currentReason()
{
    try {
        throw;
    } catch (const Failure& failure) {
        return failure.reasons();
    } catch (const std::bad_alloc&) {
        return QT_TRANSLATE_NOOP("quillfern::Failure", "There is not enough memory.");
    } catch (const std::system_error& error) {
        if (error.code() == std::errc::resource_unavailable_try_again)
            return QT_TRANSLATE_NOOP("quillfern::Failure", "The system allows no further thread.");
        return QString::fromUtf8(error.what());
    } catch (const std::exception& exception) {
        return QString::fromUtf8(exception.what());
    } catch (...) {
        return QT_TRANSLATE_NOOP("quillfern::Failure", "An unknown error happened.");
    }
}

QString reasonOfCurrentException()
{
    return currentReason().logged;
}

bool isCurrentExceptionShortage()
{
    try {
        throw;
    } catch (const Failure& failure) {
        return failure.isShortage();
    } catch (const std::bad_alloc&) {
        return true;
    } catch (const std::system_error& error) {
        return error.code() == std::errc::resource_unavailable_try_again;
    } catch (...) {
        return false;
    }
}

} // namespace quillfern
