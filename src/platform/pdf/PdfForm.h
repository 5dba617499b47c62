#pragma once

#include <qpdf/QPDF.hh>
#include <set>

namespace quillfern::pdf {

/// What a document has of digital signatures (ISO 32000-1, 12.7.4.5 and 12.8.4).
struct Signatures
{
    bool isSigned = false;    ///< a signature field is signed, or the document is certified
    bool isCertified = false; ///< its author's signature says which changes it bears
};
[[nodiscard]] Signatures signaturesOf(QPDF& document);

/// Removes the form fields all of whose widgets are among `widgets`, and the fields that only grouped such
/// fields: a form must not require a field that is shown nowhere. A field that is also shown elsewhere only
/// loses its widgets. What the document says of signatures that are gone with their fields goes, too.
void dropFormFields(QPDF& document, const std::set<QPDFObjGen>& widgets);

} // namespace quillfern::pdf
