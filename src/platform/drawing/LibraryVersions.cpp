#include "platform/drawing/LibraryVersions.h"

#ifdef QUILLFERN_HAVE_FONTCONFIG
#include <fontconfig/fontconfig.h>
#endif

namespace quillfern::drawing {

std::vector<LibraryVersion> libraryVersions()
{
    std::vector<LibraryVersion> versions = {{"Qt", QString::fromLatin1(qVersion())}};
#ifdef QUILLFERN_HAVE_FONTCONFIG
    const int version = FcGetVersion(); // 21401 is 2.14.1
    versions.push_back(
        {"fontconfig",
         QStringLiteral("%1.%2.%3").arg(version / 10000).arg(version / 100 % 100).arg(version % 100)});
#endif
    return versions;
}

} // namespace quillfern::drawing
