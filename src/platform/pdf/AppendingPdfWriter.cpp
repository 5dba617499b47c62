#include "platform/pdf/DocumentChanges.h"
#include "platform/pdf/FileInput.h"
#include "platform/pdf/IncrementalUpdate.h"
#include "platform/pdf/NewObjects.h"
#include "platform/pdf/PdfWriter.h"
#include "platform/store/AtomicFile.h"
#include "platform/system/Cancellation.h"

namespace quillfern::pdf {

namespace {

std::optional<SourceEnd> appendableEnd(QPDF& document, const DocumentChanges& changes,
                                       const FileInput& source)
{
    if (changes.isRebuilt() || document.isEncrypted()) return std::nullopt;
    const std::optional<SourceEnd> end = findSourceEnd(source);
    return end && canContinue(*end) ? end : std::nullopt;
}

/// "1.3" and the like as numbers that can be compared; 0 for what is none.
double versionNumber(const std::string& version)
{
    return QByteArray::fromStdString(version).toDouble();
}

double presentVersion(QPDF& document)
{
    QPDFObjectHandle stated = document.getRoot().getKey("/Version");
    return std::max(versionNumber(document.getPDFVersion()),
                    stated.isName() ? versionNumber(stated.getName().substr(1)) : 0.0);
}

/// The header of the source stays, so a higher version stands in the catalogue (ISO 32000-1, 7.2.2).
void requireVersion(QPDF& document, DocumentChanges& changes, const char* version)
{
    QPDFObjectHandle catalogue = document.getRoot();
    if (presentVersion(document) >= versionNumber(version)) return;
    catalogue.replaceKey("/Version", QPDFObjectHandle::newName(std::string("/") + version));
    changes.noteChanged(catalogue);
}

} // namespace

bool AppendingPdfWriter::writesAnew(const EditedDocument& edited) const
{
    return !appendableEnd(edited.document, edited.changes, edited.source);
}

void AppendingPdfWriter::write(const EditedDocument& edited, store::AtomicFile& target,
                               std::stop_token stop) const
{
    auto& [document, changes, objects, source] = edited;
    const std::optional<SourceEnd> end = appendableEnd(document, changes, source);
    if (!end) {
        RewritingPdfWriter().write(edited, target, std::move(stop));
        return;
    }
    if (changes.usesTransparency()) requireVersion(document, changes, "1.4");
    target.copyFrom(source.descriptor(), end->size, stop);
    // Where the file's own table is not as it should be, or leads nowhere for a single reference, other
    // readers look for all objects themselves. Poppler would not find those in object streams then, and show
    // the pages without their stamps.
    const bool knowsObjectStreams = presentVersion(document) >= 1.5 && changes.hasSoundReferences();
    IncrementalUpdate update(document, *end, objects.nextNumber(), knowsObjectStreams, target);
    for (const QPDFObjGen& id : changes.objects()) {
        throwIfCancelled(stop);
        update.addObject(document.getObject(id));
    }
    for (const auto& [number, text] : changes.texts()) {
        throwIfCancelled(stop);
        update.addText(number, text);
    }
    for (const int number : objects.others())
        update.addObject(document.getObject(number, 0));
    for (const NewObjects::Stream& stream : objects.streams()) {
        throwIfCancelled(stop);
        update.addStream(QPDFObjGen(stream.number, 0), stream.dictionary, stream.bytes);
    }
    update.finish();
}

} // namespace quillfern::pdf
