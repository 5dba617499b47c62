#pragma once

#include "platform/pdf/PageArea.h"
#include "platform/pdf/Passwords.h"
#include "platform/system/FilePath.h"

#include <QSizeF>
#include <optional>
#include <stop_token>

namespace quillfern::pdf {

/// What is known of a document before it is opened to be stamped.
struct PdfLook
{
    bool isLocked = false;    ///< none of the passwords opens the document; the rest is not known then
    bool isSigned = false;    ///< a signature field is signed, or the document is certified
    bool isCertified = false; ///< the author's signature says which changes the document bears
    int archivalPart = 0;     ///< as the XMP packet claims (pdfaid:part, ISO 19005); 0 for none, or unasked
    std::optional<QSizeF> firstPage; ///< its area as its reader sees it, in points
};

/// What to look for beside signatures.
struct PdfLookRequest
{
    bool archivalPart = false; ///< takes reading the metadata
    PageArea area = PageArea::Whole;
};

/// Reads the trailer, the catalogue and the first page of a document, and no more than these lead to. Nothing
/// for a file that cannot be read so; a damaged one may open all the same. Throws Cancelled once `stop` is
/// stopped. Any thread.
[[nodiscard]] std::optional<PdfLook> lookAtPdf(const FilePath& path, const PdfLookRequest& request,
                                               const std::stop_token& stop = {},
                                               const Passwords& passwords = {});

} // namespace quillfern::pdf
