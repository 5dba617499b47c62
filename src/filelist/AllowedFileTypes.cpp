#include "filelist/AllowedFileTypes.h"

#include "platform/system/FilePath.h"

namespace quillfern {

const QStringList& allowedFileTypes()
{
    static const QStringList types =
        QStringLiteral("pdf,PDF,tif,TIF,tiff,TIFF,bmp,BMP,jpg,JPG,jpeg,JPEG,png,PNG,gif,GIF").split(u',');
    return types;
}

bool hasAllowedType(const QString& name)
{
    return allowedFileTypes().contains(FilePath::extensionOf(name));
}

} // namespace quillfern
