#pragma once

#include <QImage>
#include <qpdf/QPDF.hh>

namespace quillfern {

struct PdfImage
{
    QPDFObjectHandle object; ///< an image XObject, indirect
    bool hasMask = false;
};

/// Puts a picture into the document without loss: grey pictures as grey, others as RGB, deflated with
/// whichever predictor makes it smaller, and with a soft mask only when some pixel is not opaque.
[[nodiscard]] PdfImage makeImage(QPDF& document, const QImage& image);

} // namespace quillfern
