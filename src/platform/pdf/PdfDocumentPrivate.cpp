#include "platform/pdf/PdfDocumentPrivate.h"

#include "platform/pdf/EnclosedContent.h"
#include "platform/pdf/PlainCompletion.h"
#include "platform/pdf/PlainPageText.h"

#include <span>

namespace quillfern::pdf {

QPDFObjectHandle PdfDocument::Private::saveState()
{
    if (!saveState_.isInitialized()) saveState_ = objects.addStream("q\n");
    return saveState_;
}

std::shared_ptr<ContentScanner::Scan>
PdfDocument::Private::scanOf(const std::vector<QPDFObjectHandle>& streams)
{
    // Content that several pages share is read once. The map is emptied when it grows large, because most
    // content belongs to one page only.
    std::vector<QPDFObjGen> key;
    for (const QPDFObjectHandle& stream : streams)
        key.push_back(stream.getObjGen());
    const auto found = scans_.find(key);
    if (found != scans_.end()) return found->second;
    if (scans_.size() >= 4 * mostPending) forgetScans();
    return scans_.emplace(std::move(key), scanner_.scan(streams)).first->second;
}

std::shared_ptr<ContentScanner::Scan> PdfDocument::Private::scanOf(const PlainPage& page)
{
    const std::span<const int> numbers = plainPages()->contentOf(page);
    std::vector<QPDFObjGen> key;
    key.reserve(numbers.size());
    for (const int number : numbers)
        key.emplace_back(number, 0);
    const auto found = scans_.find(key);
    if (found != scans_.end()) return found->second;
    if (scans_.size() >= 4 * mostPending) forgetScans();
    return scans_.emplace(std::move(key), scanner_.scan(plainPages()->placesOf(page))).first->second;
}

void PdfDocument::Private::add(Pending pending)
{
    pending_.push_back(std::move(pending));
    if (pending_.size() > mostPending) settleOldest();
}

void PdfDocument::Private::settleAll()
{
    while (!pending_.empty())
        settleOldest();
}

void PdfDocument::Private::settleOldest()
{
    Pending pending = std::move(pending_.front());
    pending_.pop_front();
    if (pending.plain) {
        settlePlain(pending);
        return;
    }
    QPDFObjectHandle contents = QPDFObjectHandle::newArray();

    std::string closing;
    if (pending.scan) {
        const ContentScanner::Result& scan = scanner_.resultOf(*pending.scan);
        closing = scan.balance.closing.toStdString();
        if (scan.balance.damaged || (scan.undecodable && pending.streams.size() == 1)) {
            encloseAndStamp(pending, scan);
            return;
        }
        if (!scan.mended.isEmpty()) pending.streams = {objects.addDeflated(scan.mended)};
    }
    const bool wrap = !pending.over.empty() && !pending.streams.empty();
    if (!pending.under.empty())
        contents.appendItem(objects.addStream(pending.under + (wrap ? "q\n" : "")));
    else if (wrap)
        contents.appendItem(saveState());
    for (const QPDFObjectHandle& stream : pending.streams)
        contents.appendItem(stream);
    // The line feed ends a comment, or an escape, that the content ends in.
    if (!pending.over.empty())
        contents.appendItem(objects.addStream(wrap ? '\n' + closing + "Q\n" + pending.over : pending.over));
    pending.page.replaceKey("/Contents", contents);
}

void PdfDocument::Private::settlePlain(Pending& pending)
{
    const PlainPage& page = *pending.plain;
    const std::span<const int> numbers = plainPages()->contentOf(page);
    std::string contents;
    for (const int number : numbers)
        contents += std::to_string(number) + " 0 R ";
    std::string closing;
    if (pending.scan) {
        const ContentScanner::Result& scan = scanner_.resultOf(*pending.scan);
        if (scan.balance.damaged) {
            makeObject(pending);
            encloseAndStamp(pending, scan);
            return;
        }
        closing = scan.balance.closing.toStdString();
        if (!scan.mended.isEmpty()) contents = objects.addDeflated(scan.mended).unparse() + ' ';
    }
    const auto added = [this](std::string bytes) {
        return std::to_string(objects.addUnknownStream(std::move(bytes))) + " 0 R ";
    };
    const bool wrap = !pending.over.empty() && !contents.empty();
    if (!pending.under.empty())
        contents.insert(0, added(pending.under + (wrap ? "q\n" : "")));
    else if (wrap)
        contents.insert(0, saveState().unparse() + ' ');
    if (!pending.over.empty()) contents += added(wrap ? '\n' + closing + "Q\n" + pending.over : pending.over);
    PlainPageEdits edits;
    edits.resources = std::move(pending.resources);
    if (!pending.under.empty() || !pending.over.empty()) {
        contents.back() = ']';
        edits.contents = '[' + contents;
    }
    changes.noteChanged(page.number, editedPage(page, edits));
}

void PdfDocument::Private::makeObject(Pending& pending)
{
    const PlainPage& page = *pending.plain;
    const std::string text = editedPage(page, {{}, pending.resources});
    const QPDFObjGen id(page.number, 0);
    qpdf.replaceObject(id, QPDFObjectHandle::parse(&qpdf, text, "page"));
    pending.page = qpdf.getObject(id);
    for (const int number : plainPages()->contentOf(page))
        pending.streams.push_back(qpdf.getObject(number, 0));
    changes.noteChanged(pending.page);
}

void PdfDocument::Private::makeObjects()
{
    if (!plainPages()) return;
    settleAll();
    pages = completeDocument(qpdf, *plainPages(), plain, changes);
    completed_ = std::move(document.plainPages); // the streams are still read by its table
}

/// Damaged content ends where its form ends.
void PdfDocument::Private::encloseAndStamp(Pending& pending, const ContentScanner::Result& scan)
{
    // The structure tree is changed in many places.
    if (pending.page.hasKey("/StructParents")) changes.noteRebuilt();
    // Pages that share their content share its form.
    std::string key = formSurroundings(pending.page);
    for (const QPDFObjectHandle& stream : pending.streams)
        if (!key.empty()) key += stream.getObjGen().unparse(' ');
    QPDFObjectHandle form = key.empty() ? QPDFObjectHandle() : forms_[key];
    if (!form.isInitialized()) {
        if (scan.undecodable)
            form = objects.addCopy(pending.streams.front());
        else if (scan.balance.unfinished) // anything behind it would become a part of it
            form = objects.addDeflated(scan.mended);
        else
            form = objects.addDeflated(scan.mended + '\n' + scan.balance.closing);
        makeForm(qpdf, pending.page, form);
        if (!key.empty()) forms_[key] = form;
        mendedBytes_ += scan.mended.size();
    }
    const std::string drawn = drawForm(pending.page, form);
    pending.page.replaceKey("/Contents", objects.addStream(pending.under + drawn + pending.over));
    if (mendedBytes_ > mostMendedBytes) forgetScans();
}

} // namespace quillfern::pdf
