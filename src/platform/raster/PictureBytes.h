#pragma once

#include "platform/drawing/Picture.h"
#include "platform/system/FilePath.h"

#include <QByteArray>
#include <QSize>
#include <QString>

namespace quillfern::raster {

/// A picture as stamps keep it: the bytes of a TIFF of one page.
struct PictureBytes
{
    QByteArray tiff;
    QSize size; ///< pixels
};

/// Reads a BMP, JPEG, PNG, GIF or TIFF file (its first frame, upright) into that form, without loss. Throws
/// Failure when it cannot be read or is too large for a stamp.
[[nodiscard]] PictureBytes readPictureFile(const FilePath& path);

/// Decodes such bytes, or those of any format that readPictureFile() takes. What the header claims is checked
/// before memory is taken. Throws Failure.
[[nodiscard]] drawing::Picture decodePicture(const QByteArray& bytes);

} // namespace quillfern::raster
