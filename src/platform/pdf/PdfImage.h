#pragma once

#include "platform/drawing/Picture.h"

#include <qpdf/QPDFObjectHandle.hh>

namespace quillfern::pdf {

class NewObjects;
class SharedCodings;

struct PdfImage
{
    QPDFObjectHandle object; ///< an image XObject, indirect
    bool hasMask = false;
};

/// Puts a picture into the document without loss: one that comes from a JPEG as that JPEG; grey pictures as
/// grey, others as RGB, deflated with predictors or without, whichever is smaller, and with a soft mask only
/// when some pixel is not opaque.
[[nodiscard]] PdfImage makeImage(NewObjects& objects, SharedCodings& codings,
                                 const drawing::Picture& picture);

} // namespace quillfern::pdf
