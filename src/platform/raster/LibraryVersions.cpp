#include "platform/raster/LibraryVersions.h"

#include <cstdio> // jpeglib.h needs it before itself

#include <jpeglib.h>
#include <lcms2.h>
#include <png.h>
#include <tiffio.h>

#define QUILLFERN_AS_TEXT(token) #token
#define QUILLFERN_VALUE_AS_TEXT(macro) QUILLFERN_AS_TEXT(macro)

namespace quillfern::raster {

namespace {

/// "LIBTIFF, Version 4.5.0" and a line on the copyright.
QString versionOfTiff()
{
    return QString::fromLatin1(TIFFGetVersion()).section(u'\n', 0, 0).section(u' ', -1);
}

QString versionOfLcms()
{
    const int version = cmsGetEncodedCMMversion(); // 2140 is 2.14
    return QStringLiteral("%1.%2").arg(version / 1000).arg(version % 1000 / 10);
}

} // namespace

std::vector<LibraryVersion> libraryVersions()
{
    return {{"libtiff", versionOfTiff()},
            {"libjpeg-turbo", QStringLiteral(QUILLFERN_VALUE_AS_TEXT(LIBJPEG_TURBO_VERSION))},
            {"libpng", QString::fromLatin1(png_get_libpng_ver(nullptr))},
            {"Little CMS", versionOfLcms()}};
}

} // namespace quillfern::raster
