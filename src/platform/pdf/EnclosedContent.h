#pragma once

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <string>

namespace quillfern::pdf {

/// Makes `content`, a stream, a form of its own (ISO 32000-1, 8.10) with the page's resources, so that damage
/// in it ends where the form ends, and returns what draws the form. The page gets resources of its own; its
/// marked content is the form's from now on, and the structure tree refers to the form. What the page's
/// /Contents hold is left to the caller.
[[nodiscard]] std::string encloseContent(QPDF& document, QPDFObjectHandle page, QPDFObjectHandle content);

} // namespace quillfern::pdf
