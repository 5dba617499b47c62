#include "platform/pdf/LibraryVersions.h"

#include <hb.h>
#include <libdeflate.h>
#include <qpdf/QPDF.hh>
#include <zlib.h>

namespace quillfern::pdf {

std::vector<LibraryVersion> libraryVersions()
{
    return {{"qpdf", QString::fromStdString(QPDF::QPDFVersion())},
            {"HarfBuzz", QString::fromLatin1(hb_version_string())},
            {"zlib", QString::fromLatin1(zlibVersion())},
            {"libdeflate", QStringLiteral(LIBDEFLATE_VERSION_STRING)}};
}

} // namespace quillfern::pdf
