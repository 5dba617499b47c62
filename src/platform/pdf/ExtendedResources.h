#pragma once

#include "platform/pdf/PdfResources.h"

#include <map>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFObjectHandle.hh>
#include <string>
#include <unordered_map>
#include <utility>

namespace quillfern::pdf {

class NewObjects;
struct PlainPage;

/// Resource dictionaries of pages with what stamps add to them. Pages that shared one dictionary, or had
/// equal ones, share its extended copy; the original stays for everything else that uses it.
class ExtendedResources
{
  public:
    /// Both are borrowed.
    ExtendedResources(QPDF& document, NewObjects& objects) : document_(document), objects_(objects) {}

    [[nodiscard]] QPDFObjectHandle with(const QPDFObjectHandle& page, const PdfPageResources& added);

    /// The same for a page that is text.
    [[nodiscard]] std::string with(const PlainPage& page, const PdfPageResources& added);
    /// To be filled with what the stamps of the page use.
    [[nodiscard]] PdfPageResources namesFor(const PlainPage& page);
    /// The page's resources; null without any.
    [[nodiscard]] QPDFObjectHandle of(const PlainPage& page);

  private:
    [[nodiscard]] QPDFObjectHandle shared(const QPDFObjGen& holder, const QPDFObjectHandle& present,
                                          const PdfPageResources& added);

    QPDF& document_;
    NewObjects& objects_;
    std::map<std::pair<QPDFObjGen, std::string>, QPDFObjectHandle> shared_;
    std::unordered_map<std::string, QPDFObjectHandle> equal_; ///< by their text
    std::map<int, QPDFObjectHandle> inherited_;               ///< by the node that has them
    std::map<int, PdfPageResources> names_;                   ///< of shared dictionaries, by object number
};

} // namespace quillfern::pdf
