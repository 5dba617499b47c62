#include "platform/pdf/PdfPageExtract.h"

#include "platform/pdf/FileInput.h"
#include "platform/pdf/LibraryErrors.h"
#include "platform/pdf/PasswordAttempts.h"
#include "platform/pdf/PdfPageBox.h"
#include "platform/system/Failure.h"

#include <limits>
#include <qpdf/Buffer.hh>
#include <qpdf/Constants.h>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFPageDocumentHelper.hh>
#include <qpdf/QPDFWriter.hh>
#include <set>

namespace quillfern::pdf {

namespace {

/// Walks the page tree by its counts, so that the first page of a long document costs no more than that of a
/// short one. Gives null where the tree is not as it should be.
QPDFObjectHandle pageByCounts(QPDFObjectHandle node, int index)
{
    std::set<QPDFObjGen> seen;
    while (node.isDictionary() && node.hasKey("/Kids")) {
        if (!seen.insert(node.getObjGen()).second) return QPDFObjectHandle::newNull();
        QPDFObjectHandle kids = node.getKey("/Kids");
        QPDFObjectHandle chosen = QPDFObjectHandle::newNull();
        const int count = kids.isArray() ? kids.getArrayNItems() : 0;
        for (int i = 0; i < count && chosen.isNull(); ++i) {
            QPDFObjectHandle kid = kids.getArrayItem(i);
            if (!kid.isDictionary()) return QPDFObjectHandle::newNull();
            QPDFObjectHandle below = kid.getKey("/Count");
            if (kid.hasKey("/Kids") && !below.isInteger()) return QPDFObjectHandle::newNull();
            const int pages = kid.hasKey("/Kids") ? below.getIntValueAsInt() : 1;
            if (pages < 0) return QPDFObjectHandle::newNull();
            if (index < pages)
                chosen = kid;
            else
                index -= pages;
        }
        node = chosen;
    }
    return node;
}

QPDFObjectHandle pageAt(QPDF& document, int index)
{
    if (index < 0) throw Failure(QT_TRANSLATE_NOOP("quillfern::Failure", "The document has no such page."));
    QPDFObjectHandle page = pageByCounts(document.getRoot().getKey("/Pages"), index);
    if (page.isDictionary()) return page;
    // Reading the whole tree takes longer but repairs a broken one.
    const auto& pages = document.getAllPages();
    if (static_cast<std::size_t>(index) >= pages.size())
        throw Failure(QT_TRANSLATE_NOOP("quillfern::Failure", "The document has no such page."));
    return pages[static_cast<std::size_t>(index)];
}

/// The entries of `from` that are named, as a new dictionary.
QPDFObjectHandle withKeys(QPDFObjectHandle from, std::initializer_list<const char*> keys)
{
    QPDFObjectHandle result = QPDFObjectHandle::newDictionary();
    for (const char* key : keys)
        if (from.hasKey(key)) result.replaceKey(key, from.getKey(key));
    return result;
}

/// The visible parts of the annotations. Their actions, parents and pop-ups refer to other objects, with
/// which half of the document would be copied.
QPDFObjectHandle visibleAnnotations(QPDFObjectHandle page)
{
    QPDFObjectHandle result = QPDFObjectHandle::newArray();
    QPDFObjectHandle annotations = page.getKey("/Annots");
    const int count = annotations.isArray() ? annotations.getArrayNItems() : 0;
    for (int i = 0; i < count; ++i) {
        QPDFObjectHandle annotation = annotations.getArrayItem(i);
        if (!annotation.isDictionary()) continue;
        QPDFObjectHandle subtype = annotation.getKey("/Subtype");
        if (subtype.isName() && subtype.getName() == "/Popup") continue;
        result.appendItem(withKeys(annotation, {"/Type", "/Subtype", "/Rect", "/AP", "/AS", "/F"}));
    }
    return result;
}

QPDFObjectHandle selfContained(QPDF& source, QPDFObjectHandle page, const PdfPageBox& box)
{
    QPDFObjectHandle single = withKeys(page, {"/Contents", "/Group"});
    single.replaceKey("/Type", QPDFObjectHandle::newName("/Page"));
    single.replaceKey("/MediaBox",
                      QPDFObjectHandle::newFromRectangle(QPDFObjectHandle::Rectangle(
                          box.area().left(), box.area().top(), box.area().right(), box.area().bottom())));
    for (const char* key : {"/Resources", "/Rotate"})
        single.replaceKey(key, inheritedAttribute(page, key));
    single.replaceKey("/Annots", visibleAnnotations(page));
    return source.makeIndirectObject(single);
}

ExtractedPage extract(const FilePath& path, int index, PageArea area, const Passwords& passwords)
{
    const auto opened = withPassword(
        passwords,
        [&](const std::string& password) {
            auto document = std::make_unique<QPDF>();
            document->setSuppressWarnings(true);
            document->processInputSource(std::make_shared<FileInput>(path), password.c_str());
            return document;
        },
        [](const std::unique_ptr<QPDF>& document) -> QPDF& { return *document; });
    QPDF& source = *opened;
    QPDFObjectHandle page = pageAt(source, index);
    const PdfPageBox box(page, area);

    QPDF single;
    single.setSuppressWarnings(true);
    single.emptyPDF();
    single.addPage(single.copyForeignObject(selfContained(source, page, box)), false);
    // Which layers are switched off is stated in the document's catalogue, not in the page.
    QPDFObjectHandle layers = source.getRoot().getKey("/OCProperties");
    if (layers.isDictionary()) {
        if (!layers.isIndirect()) layers = source.makeIndirectObject(layers);
        single.getRoot().replaceKey("/OCProperties", single.copyForeignObject(layers));
    }
    QPDFPageDocumentHelper(single).flattenAnnotations(0, an_invisible | an_hidden | an_no_view);

    QPDFWriter writer(single);
    writer.setOutputMemory();
    writer.setStreamDataMode(qpdf_s_preserve);
    writer.write();
    const auto bytes = writer.getBufferSharedPointer();
    if (bytes->getSize() > std::numeric_limits<int>::max())
        throw Failure(QT_TRANSLATE_NOOP("quillfern::Failure", "The page is too large to be shown."));
    return {QByteArray(reinterpret_cast<const char*>(bytes->getBuffer()),
                       static_cast<qsizetype>(bytes->getSize())),
            box.displaySize()};
}

} // namespace

ExtractedPage extractPdfPage(const FilePath& path, int index, PageArea area, const Passwords& passwords)
{
    return translated([&] { return extract(path, index, area, passwords); });
}

} // namespace quillfern::pdf
