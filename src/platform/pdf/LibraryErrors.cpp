#include "platform/pdf/LibraryErrors.h"

#include "platform/system/Failure.h"

namespace quillfern::pdf {

void refuse(const QPDFExc& exception)
{
    if (exception.getErrorCode() == qpdf_e_password)
        throw Failure(QT_TRANSLATE_NOOP("quillfern::Failure", "the document needs a password"));
    throw Failure(QString::fromStdString(exception.getMessageDetail()));
}

void refuse(const std::exception& error)
{
    throw Failure(QString::fromUtf8(error.what()));
}

} // namespace quillfern::pdf
