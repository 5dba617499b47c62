#include "platform/raster/Orientation.h"

#include "platform/system/Failure.h"

#include <QTransform>

namespace quillfern::raster {

QImage upright(QImage image, int orientation)
{
    const bool isMirrored = orientation == 2 || orientation == 4 || orientation == 5 || orientation == 7;
    const int angle = orientation == 3 || orientation == 4   ? 180
                      : orientation == 5 || orientation == 6 ? 90
                      : orientation == 7 || orientation == 8 ? 270
                                                             : 0;
    // Half a turn is done by mirroring both ways, which a page of its own needs no second one for.
    if (angle == 180)
        image = std::move(image).mirrored(!isMirrored, true);
    else if (angle != 0)
        image = image.transformed(QTransform().rotate(angle));
    if (isMirrored && angle != 180) image = std::move(image).mirrored(true, false);
    if (image.isNull())
        throw Failure(
            QT_TRANSLATE_NOOP("quillfern::Failure", "There is not enough memory for a page of this size."));
    return image;
}

} // namespace quillfern::raster
