#include "platform/system/Failure.h"

#include <cstring>
#include <new>

namespace quillfern {

Failure::Failure(QString reason) : reason_(std::move(reason)), utf8_(reason_.toUtf8())
{
}

Failure Failure::fromErrno(const QString& doing, int errorNumber)
{
    return Failure(doing + QStringLiteral(": ") + QString::fromLocal8Bit(std::strerror(errorNumber)));
}

QString reasonOfCurrentException()
{
    try {
        throw;
    } catch (const Failure& failure) {
        return failure.reason();
    } catch (const std::bad_alloc&) {
        return QStringLiteral("not enough memory");
    } catch (const std::exception& exception) {
        return QString::fromUtf8(exception.what());
    } catch (...) {
        return QStringLiteral("unknown failure");
    }
}

} // namespace quillfern
