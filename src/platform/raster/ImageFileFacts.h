#pragma once

#include <QByteArray>
#include <QSize>
#include <QSizeF>
#include <QString>

namespace quillfern {

/// What a BMP, JPEG, PNG or GIF file says of itself that the image decoder does not pass on.
struct ImageFileFacts
{
    QSizeF dotsPerInch{72, 72}; ///< 72 where the file states none
    bool isWhole = true;        ///< false when the file breaks off before its end mark
};

/// `format` is the decoder's name of the format ("jpeg", "png", ...), `size` the stored size in pixels.
/// Decoders fill in what a cut-off file lacks and call it a picture; this looks for the end. Never throws: a
/// file that cannot be read is not whole.
[[nodiscard]] ImageFileFacts readImageFileFacts(const QString& path, const QByteArray& format,
                                                const QSize& size);

} // namespace quillfern
