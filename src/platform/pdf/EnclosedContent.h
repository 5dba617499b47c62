#pragma once

#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <string>

namespace quillfern::pdf {

/// Makes `content`, a stream, a form (ISO 32000-1, 8.10) with the page's resources and box, so that damage in
/// it ends where the form ends. The page's marked content is the form's from now on, and the structure tree
/// refers to the form.
void makeForm(QPDF& document, QPDFObjectHandle page, QPDFObjectHandle content);

/// Equal for pages that can show the same form when their content is the same; empty for a page whose form is
/// its own because the structure tree refers to it.
[[nodiscard]] std::string formSurroundings(QPDFObjectHandle page);

/// Gives the page resources of its own with the form among them, and returns what draws the form.
[[nodiscard]] std::string drawForm(QPDFObjectHandle page, QPDFObjectHandle form);

} // namespace quillfern::pdf
