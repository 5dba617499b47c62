#include "filelist/AllowedFileTypes.h"

#include "platform/system/NativePath.h"

namespace quillfern {

const QStringList& allowedFileTypes()
{
    static const QStringList types =
        QStringLiteral("pdf,PDF,tif,TIF,tiff,TIFF,bmp,BMP,jpg,JPG,jpeg,JPEG,png,PNG,gif,GIF").split(u',');
    return types;
}

bool hasAllowedType(const QString& path)
{
    return allowedFileTypes().contains(pathExtension(path));
}

} // namespace quillfern
