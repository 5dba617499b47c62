#include "platform/pdf/PdfForm.h"

#include <qpdf/QPDFObjectHandle.hh>
#include <vector>

namespace quillfern::pdf {

namespace {

/// `array` without the objects in `gone`.
QPDFObjectHandle without(QPDFObjectHandle array, const std::set<QPDFObjGen>& gone)
{
    QPDFObjectHandle kept = QPDFObjectHandle::newArray();
    for (const QPDFObjectHandle& item : array.getArrayAsVector())
        if (!gone.count(item.getObjGen())) kept.appendItem(item);
    return kept;
}

/// The values of the signature fields that are signed.
std::vector<QPDFObjectHandle> signatures(QPDF& document)
{
    struct Node
    {
        QPDFObjectHandle field;
        bool isSignature; ///< as its ancestors say
    };
    std::vector<QPDFObjectHandle> found;
    std::vector<Node> waiting;
    const auto queue = [&](QPDFObjectHandle list, bool isSignature) {
        if (!list.isArray()) return;
        for (int i = 0; i < list.getArrayNItems(); ++i)
            waiting.push_back({list.getArrayItem(i), isSignature});
    };
    QPDFObjectHandle form = document.getRoot().getKey("/AcroForm");
    if (form.isDictionary()) queue(form.getKey("/Fields"), false);
    std::set<QPDFObjGen> seen;
    while (!waiting.empty()) {
        Node node = waiting.back();
        waiting.pop_back();
        QPDFObjectHandle field = node.field;
        if (!field.isDictionary() || (field.isIndirect() && !seen.insert(field.getObjGen()).second)) continue;
        QPDFObjectHandle type = field.getKey("/FT");
        if (type.isName()) node.isSignature = type.getName() == "/Sig";
        if (node.isSignature && field.getKey("/V").isDictionary()) found.push_back(field.getKey("/V"));
        queue(field.getKey("/Kids"), node.isSignature);
    }
    return found;
}

/// The dictionary that names the certifying signature; null without one.
QPDFObjectHandle certification(QPDF& document)
{
    QPDFObjectHandle permissions = document.getRoot().getKey("/Perms");
    const bool present = permissions.isDictionary() && permissions.getKey("/DocMDP").isDictionary();
    return present ? permissions : QPDFObjectHandle::newNull();
}

/// Takes back what the document says of signatures that are no longer in its form.
void settleSignatures(QPDF& document)
{
    const std::vector<QPDFObjectHandle> left = signatures(document);
    QPDFObjectHandle form = document.getRoot().getKey("/AcroForm");
    if (left.empty()) form.removeKey("/SigFlags");
    QPDFObjectHandle permissions = certification(document);
    if (permissions.isNull()) return;
    for (QPDFObjectHandle signature : left)
        if (signature.isSameObjectAs(permissions.getKey("/DocMDP"))) return;
    permissions.removeKey("/DocMDP");
    if (permissions.getKeys().empty()) document.getRoot().removeKey("/Perms");
}

} // namespace

Signatures signaturesOf(QPDF& document)
{
    const bool isCertified = !certification(document).isNull();
    return {isCertified || !signatures(document).empty(), isCertified};
}

void dropFormFields(QPDF& document, const std::set<QPDFObjGen>& widgets)
{
    QPDFObjectHandle form = document.getRoot().getKey("/AcroForm");
    if (widgets.empty() || !form.isDictionary()) return;
    std::set<QPDFObjGen> gone = widgets;
    std::vector<QPDFObjGen> queue(widgets.begin(), widgets.end());
    while (!queue.empty()) {
        QPDFObjectHandle parent = document.getObject(queue.back());
        queue.pop_back();
        parent = parent.isDictionary() ? parent.getKey("/Parent") : parent;
        if (!parent.isDictionary() || !parent.isIndirect() || !parent.getKey("/Kids").isArray()) continue;
        const QPDFObjectHandle kept = without(parent.getKey("/Kids"), gone);
        parent.replaceKey("/Kids", kept);
        if (QPDFObjectHandle(kept).getArrayNItems() == 0 && gone.insert(parent.getObjGen()).second)
            queue.push_back(parent.getObjGen());
    }
    for (const char* list : {"/Fields", "/CO"})
        if (form.getKey(list).isArray()) form.replaceKey(list, without(form.getKey(list), gone));
    settleSignatures(document);
}

} // namespace quillfern::pdf
