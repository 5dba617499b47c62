#include "platform/pdf/LibraryErrors.h"

#include "platform/system/Failure.h"

namespace quillfern::pdf {

namespace {

constexpr auto damaged = QT_TRANSLATE_NOOP("quillfern::Failure", "The document is damaged beyond repair.");

} // namespace

void refuse(const QPDFExc& exception)
{
    if (exception.getErrorCode() == qpdf_e_password)
        throw Failure(QT_TRANSLATE_NOOP("quillfern::Failure", "The document needs a password."));
    throw Failure(Reason(damaged).with(QString::fromStdString(exception.getMessageDetail())));
}

void refuse(const std::exception& error)
{
    throw Failure(Reason(damaged).with(QString::fromUtf8(error.what())));
}

} // namespace quillfern::pdf
