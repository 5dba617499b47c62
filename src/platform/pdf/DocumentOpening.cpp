#include "platform/pdf/DocumentOpening.h"

#include "platform/pdf/FileInput.h"
#include "platform/pdf/FileRepair.h"
#include "platform/pdf/LibraryErrors.h"
#include "platform/pdf/PageTree.h"
#include "platform/system/Cancellation.h"

#include <qpdf/QPDFExc.hh>
#include <set>
#include <string>

namespace quillfern::pdf {

namespace {

/// A file as qpdf reads it, with every object read.
struct Reading
{
    std::shared_ptr<FileInput> input;
    std::unique_ptr<QPDF> qpdf;
    std::string tail;      ///< what the file goes on with
    bool rebuilt = false;  ///< the cross-reference table was made anew at once
    bool cutShort = false; ///< a stream has no end
    bool damaged = false;
};

bool says(const QPDFExc& warning, const char* words)
{
    return warning.getMessageDetail().find(words) != std::string::npos;
}

Reading readFile(const FilePath& path, const std::string& tail, const std::stop_token& stop)
{
    Reading reading;
    reading.tail = tail;
    reading.input = std::make_shared<FileInput>(path, stop);
    reading.input->setTail(tail);
    reading.qpdf = std::make_unique<QPDF>();
    reading.qpdf->setSuppressWarnings(true);
    reading.qpdf->processInputSource(reading.input, "");
    for (const QPDFExc& warning : reading.qpdf->getWarnings())
        reading.rebuilt = reading.rebuilt || says(warning, "Attempting to reconstruct");
    reading.qpdf->fixDanglingReferences(); // reads everything
    reading.damaged = reading.rebuilt || reading.qpdf->anyWarnings();
    for (const QPDFExc& warning : reading.qpdf->getWarnings())
        reading.cutShort = reading.cutShort || says(warning, "treating stream as empty");
    return reading;
}

/// Reads a file with a trailer that says nothing, where it has none of its own: the library looks for the
/// objects then.
Reading readWithoutTrailer(const FilePath& path, const std::stop_token& stop)
{
    return readFile(path, "\nendstream\nendobj\ntrailer\n<<>>\n", stop);
}

Reading readAtAll(const FilePath& path, const std::stop_token& stop)
{
    try {
        return readFile(path, {}, stop);
    } catch (const QPDFExc& exception) {
        if (exception.getErrorCode() == qpdf_e_password || exception.getErrorCode() == qpdf_e_unsupported)
            throw;
        return readWithoutTrailer(path, stop);
    } catch (const std::runtime_error&) {
        return readWithoutTrailer(path, stop);
    }
}

/// Reads the file, and once more with what the library could not read in another form. `unreadable` receives
/// what cannot be read even so.
Reading readMended(const FilePath& path, const std::stop_token& stop, std::set<QPDFObjGen>& unreadable)
{
    Reading reading = readAtAll(path, stop);
    if (!reading.damaged) return reading;
    FileRepair repair(*reading.qpdf, *reading.input, reading.rebuilt);
    if (!repair.helps() && !reading.cutShort) return reading;
    Reading mended = readFile(path, reading.tail + repair.update(), stop);
    unreadable = FileRepair(*mended.qpdf, *mended.input, mended.rebuilt).unreadable();
    return mended;
}

/// Without a trailer nothing says that strings and streams are encrypted, and they would be taken as they
/// are.
void refuseLostEncryption(QPDF& document)
{
    if (document.isEncrypted()) return;
    for (QPDFObjectHandle object : document.getAllObjects()) {
        const bool isFilter = object.isDictionary() && object.getKey("/Filter").isName() &&
                              object.getKey("/O").isString() && object.getKey("/U").isString();
        const bool isTrailer = object.isStreamOfType("/XRef") && object.getDict().hasKey("/Encrypt");
        if (isFilter || isTrailer)
            throw Failure(
                QT_TRANSLATE_NOOP("quillfern::Failure",
                                  "The document is encrypted, and its trailer is damaged beyond repair."));
    }
}

/// Makes the catalogue lead to pages, where the trailer or the catalogue does not.
void findCatalogue(QPDF& document)
{
    QPDFObjectHandle trailer = document.getTrailer();
    if (!trailer.hasKey("/Size")) // only what the trailer has is written, with the right number then
        trailer.replaceKey("/Size", QPDFObjectHandle::newInteger(0));
    QPDFObjectHandle root = trailer.getKey("/Root");
    if (root.isDictionary() && root.getKey("/Pages").isDictionary()) return;
    refuseLostEncryption(document);
    QPDFObjectHandle catalogue = QPDFObjectHandle::newNull();
    QPDFObjectHandle tree = QPDFObjectHandle::newNull();
    std::vector<QPDFObjectHandle> pages;
    for (QPDFObjectHandle object : document.getAllObjects()) {
        if (!object.isDictionary()) continue;
        if (object.isDictionaryOfType("/Catalog")) catalogue = object; // the last is the newest
        if (object.isDictionaryOfType("/Pages") && !object.getKey("/Parent").isDictionary()) tree = object;
        if (object.isDictionaryOfType("/Page")) pages.push_back(object);
    }
    if (root.isDictionary()) catalogue = root;
    if (catalogue.isNull())
        catalogue = document.makeIndirectObject(
            QPDFObjectHandle::newDictionary({{"/Type", QPDFObjectHandle::newName("/Catalog")}}));
    if (!catalogue.getKey("/Pages").isDictionary()) {
        if (tree.isNull())
            tree = document.makeIndirectObject(
                QPDFObjectHandle::newDictionary({{"/Type", QPDFObjectHandle::newName("/Pages")},
                                                 {"/Kids", QPDFObjectHandle::newArray(pages)}}));
        catalogue.replaceKey("/Pages", tree);
    }
    trailer.replaceKey("/Root", catalogue);
}

/// Throws Failure where the page's content is in the file and cannot be read.
void checkContent(QPDFObjectHandle page, std::size_t index, const std::set<QPDFObjGen>& unreadable)
{
    const auto check = [&](const QPDFObjectHandle& object) {
        if (unreadable.count(object.getObjGen()) > 0)
            throw Failure({QT_TRANSLATE_NOOP("quillfern::Failure",
                                             "The content of page %1 is damaged and cannot be read."),
                           {QString::number(index + 1)}});
    };
    QPDFObjectHandle contents = page.getKey("/Contents");
    check(contents);
    if (!contents.isArray()) return;
    for (int i = 0; i < contents.getArrayNItems(); ++i)
        check(contents.getArrayItem(i));
}

} // namespace

OpenedDocument openDocument(const FilePath& path, const std::stop_token& stop)
{
    return translated([&] {
        std::set<QPDFObjGen> unreadable;
        Reading reading = readMended(path, stop, unreadable);
        findCatalogue(*reading.qpdf);
        PageTree tree = readPageTree(*reading.qpdf, stop);
        for (const QPDFObjectHandle& object : tree.unusable)
            if (unreadable.count(object.getObjGen()) > 0)
                throw Failure(QT_TRANSLATE_NOOP(
                    "quillfern::Failure", "One of the document's pages is damaged and cannot be read."));
        if (tree.pages.empty())
            throw Failure(QT_TRANSLATE_NOOP("quillfern::Failure", "the document has no pages"));
        for (std::size_t i = 0; i < tree.pages.size() && !unreadable.empty(); ++i)
            checkContent(tree.pages[i], i, unreadable);

        OpenedDocument document;
        if (!tree.unusable.empty())
            document.loss =
                Reason(QT_TRANSLATE_NOOP("quillfern::Failure",
                                         "The document is damaged: %1 of its pages are missing in it."),
                       {QString::number(tree.unusable.size())});
        else if (!unreadable.empty())
            document.loss = Reason(QT_TRANSLATE_NOOP(
                "quillfern::Failure", "The document is damaged: parts of it could not be read."));
        document.pages = std::move(tree.pages);
        document.qpdf = std::move(reading.qpdf);
        return document;
    });
}

} // namespace quillfern::pdf
