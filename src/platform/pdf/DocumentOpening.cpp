#include "platform/pdf/DocumentOpening.h"

#include "platform/pdf/FileInput.h"
#include "platform/pdf/FileRepair.h"
#include "platform/pdf/LibraryErrors.h"
#include "platform/pdf/PageTree.h"
#include "platform/pdf/PasswordAttempts.h"
#include "platform/pdf/PdfForm.h"
#include "platform/pdf/PdfPageBox.h"
#include "platform/pdf/SourceEnd.h"
#include "platform/system/Cancellation.h"

#include <memory>
#include <qpdf/QPDFExc.hh>
#include <set>
#include <string>

namespace quillfern::pdf {

namespace {

/// Objects of a file that is read whole at once.
constexpr std::size_t smallFile = 5000;
constexpr int highestNumber = 7'000'000;

/// What a file goes on with for its reader when it has no trailer of its own; the last object may have no
/// end.
const char* const trailerOnly = "\nendstream\nendobj\ntrailer\n<<>>\n";
/// The same for a file whose references are not to be followed.
const char* const noReferences = "\nendstream\nendobj\ntrailer\n<<>>\nstartxref\n0\n%%EOF\n";

/// A file and what is needed to read it.
struct Source
{
    const FilePath& path;
    std::string password;
    const std::stop_token& stop;
};

/// A file as qpdf reads it, with every object read.
struct Reading
{
    std::shared_ptr<FileInput> input;
    DocumentPointer qpdf;
    std::string tail;      ///< what the file goes on with
    bool rebuilt = false;  ///< the cross-reference table was made anew at once
    bool cutShort = false; ///< a stream has no end
    bool damaged = false;
};

bool says(const QPDFExc& warning, const char* words)
{
    return warning.getMessageDetail().find(words) != std::string::npos;
}

Reading readFile(const Source& source, const std::string& tail)
{
    Reading reading;
    reading.tail = tail;
    reading.input = std::make_shared<FileInput>(source.path, source.stop);
    reading.input->setTail(tail);
    reading.qpdf = newDocument(source.stop);
    reading.qpdf->setSuppressWarnings(true);
    reading.qpdf->processInputSource(reading.input, source.password.c_str());
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
Reading readWithoutTrailer(const Source& source)
{
    return readFile(source, trailerOnly);
}

Reading readAtAll(const Source& source)
{
    try {
        return readFile(source, {});
    } catch (const QPDFExc& exception) {
        if (exception.getErrorCode() == qpdf_e_password || exception.getErrorCode() == qpdf_e_unsupported)
            throw;
        return readWithoutTrailer(source);
    } catch (const std::runtime_error&) {
        return readWithoutTrailer(source);
    }
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
    // The first half may be needed to decrypt; the library takes it from a pair only.
    QPDFObjectHandle id = trailer.getKey("/ID");
    if (!id.isArray() || id.getArrayNItems() != 2 || !id.getArrayItem(0).isString())
        trailer.removeKey("/ID");
    else if (!id.getArrayItem(1).isString())
        id.setArrayItem(1, id.getArrayItem(0));
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

/// A file with its pages, as one way of reading finds them.
struct Attempt
{
    Reading reading;
    std::set<QPDFObjGen> unreadable; ///< what is in the file and cannot be read
    PageTree tree;
};

/// Reads the file once more with what the library could not read in another form.
Attempt mended(Reading reading, const Source& source)
{
    Attempt attempt;
    attempt.reading = std::move(reading);
    if (attempt.reading.damaged) {
        FileRepair repair(*attempt.reading.qpdf, *attempt.reading.input, attempt.reading.rebuilt);
        if (repair.helps() || attempt.reading.cutShort) {
            attempt.reading = readFile(source, attempt.reading.tail + repair.update());
            const Reading& again = attempt.reading;
            attempt.unreadable = FileRepair(*again.qpdf, *again.input, again.rebuilt).unreadable();
        }
    }
    findCatalogue(*attempt.reading.qpdf);
    attempt.tree = readPageTree(*attempt.reading.qpdf, source.stop);
    return attempt;
}

/// Looks for the objects in the file itself, where its cross-references do not lead to all pages.
Attempt withAllPages(Attempt attempt, const Source& source)
{
    if (attempt.reading.rebuilt || (attempt.tree.unusable.empty() && !attempt.tree.pages.empty()))
        return attempt;
    try {
        Attempt anew = mended(readFile(source, noReferences), source);
        if (anew.tree.pages.size() > attempt.tree.pages.size()) return anew;
    } catch (const Cancelled&) {
        throw;
    } catch (const std::exception&) {
        return attempt; // the other one is no better
    }
    return attempt;
}

/// Throws Failure where a page that is in the file, or its content, cannot be read.
void checkPages(const Attempt& attempt)
{
    const PageTree& tree = attempt.tree;
    for (const QPDFObjectHandle& object : tree.unusable)
        if (attempt.unreadable.count(object.getObjGen()) > 0)
            throw Failure(QT_TRANSLATE_NOOP("quillfern::Failure",
                                            "One of the document's pages is damaged and cannot be read."));
    if (tree.pages.empty())
        throw Failure(QT_TRANSLATE_NOOP("quillfern::Failure", "The document has no pages."));
    for (std::size_t i = 0; i < tree.pages.size() && !attempt.unreadable.empty(); ++i)
        checkContent(tree.pages[i], i, attempt.unreadable);
}

std::optional<Reason> lossOf(const Attempt& attempt)
{
    if (!attempt.tree.unusable.empty())
        return Reason(QT_TRANSLATE_NOOP("quillfern::Failure",
                                        "The document is damaged; the number of pages missing in it: %1."),
                      {QString::number(attempt.tree.unusable.size())});
    if (!attempt.unreadable.empty())
        return Reason(QT_TRANSLATE_NOOP("quillfern::Failure",
                                        "The document is damaged; parts of it could not be read."));
    return std::nullopt;
}

/// Reads what a dictionary or an array refers to. The library leaves out what reads as null when it writes
/// the holder, so damage there has to be known before.
void readReferences(QPDFObjectHandle holder)
{
    const auto read = [](QPDFObjectHandle value) {
        if (value.isIndirect())
            static_cast<void>(value.isNull());
        else if (value.isDictionary() || value.isArray())
            readReferences(value);
    };
    if (holder.isArray())
        for (const QPDFObjectHandle& item : holder.getArrayAsVector())
            read(item);
    else if (holder.isDictionary())
        for (const auto& [key, value] : holder.getDictAsMap())
            if (key != "/Contents" && key != "/Parent") read(value);
}

/// Reads what is written once more when a document is stamped, so that damage there is known before.
void readFirstObjects(QPDF& document, const std::vector<QPDFObjectHandle>& pages, PlainStreams& plain)
{
    readReferences(document.getTrailer());
    readReferences(document.getRoot());
    readReferences(document.getTrailer().getKey("/Info"));
    static_cast<void>(signaturesOf(document));
    std::set<QPDFObjGen> seen;
    for (const QPDFObjectHandle& page : pages) {
        readReferences(page);
        static_cast<void>(contentStreams(page, plain));
        QPDFObjectHandle resources = inheritedAttribute(page, "/Resources");
        if (!resources.isDictionary() ||
            (resources.isIndirect() && !seen.insert(resources.getObjGen()).second))
            continue;
        readReferences(resources);
        for (const char* category : {"/Font", "/ExtGState", "/XObject", "/ColorSpace"})
            readReferences(resources.getKey(category));
    }
}

/// Opens a file that is in order, without reading all of it. Nothing for any other file.
std::optional<OpenedDocument> openSound(const FilePath& path, const std::stop_token& stop)
{
    OpenedDocument opened;
    opened.input = std::make_shared<FileInput>(path, stop);
    const std::optional<SourceEnd> end = findSourceEnd(*opened.input);
    if (!end || !canContinue(*end)) return std::nullopt;
    opened.qpdf = newDocument(stop);
    QPDF& document = *opened.qpdf;
    document.setSuppressWarnings(true);
    try {
        document.processInputSource(opened.input, "");
        if (document.anyWarnings() || document.isEncrypted() || !document.getRoot().isDictionary() ||
            !document.getRoot().getKey("/Pages").isDictionary())
            return std::nullopt;
        // A small file costs little, and all of its references are known then, also those to nothing.
        const auto table = document.getXRefTable();
        // Some viewers read no higher object numbers; a document that is written anew gets lower ones.
        if (table.empty() || table.rbegin()->first.getObj() > highestNumber) return std::nullopt;
        opened.isReadWhole = table.size() < smallFile;
        if (opened.isReadWhole) document.fixDanglingReferences();
        PageTree tree = readPageTree(document, stop);
        if (!tree.isAsWritten || !tree.unusable.empty() || tree.pages.empty()) return std::nullopt;
        opened.plain = std::make_unique<PlainStreams>(document, *opened.input);
        readFirstObjects(document, tree.pages, *opened.plain);
        opened.pages = std::move(tree.pages);
    } catch (const Cancelled&) {
        throw;
    } catch (const std::exception&) {
        return std::nullopt; // reading it whole tells why
    }
    if (document.anyWarnings()) return std::nullopt;
    opened.isSound = true;
    return opened;
}

} // namespace

void readEverything(OpenedDocument& opened)
{
    if (!opened.isSound) return;
    opened.isSound = false;
    opened.isReadWhole = true;
    opened.qpdf->fixDanglingReferences();
    if (!opened.qpdf->anyWarnings()) return;
    bool isCutShort = false;
    for (const QPDFExc& warning : opened.qpdf->getWarnings())
        isCutShort = isCutShort || says(warning, "treating stream as empty");
    const FileRepair repair(*opened.qpdf, *opened.input, false);
    if (isCutShort || repair.helps() || !repair.unreadable().empty())
        throw Failure(
            QT_TRANSLATE_NOOP("quillfern::Failure", "Parts of the document are damaged and cannot be read."));
}

namespace {

OpenedDocument openWhole(const Source& source)
{
    Attempt attempt = withAllPages(mended(readAtAll(source), source), source);
    checkPages(attempt);
    std::optional<Reason> loss = lossOf(attempt);
    OpenedDocument opened;
    opened.input = std::move(attempt.reading.input);
    opened.qpdf = std::move(attempt.reading.qpdf);
    opened.plain = std::make_unique<PlainStreams>(*opened.qpdf, *opened.input);
    opened.pages = std::move(attempt.tree.pages);
    opened.loss = std::move(loss);
    return opened;
}

} // namespace

OpenedDocument openDocument(const FilePath& path, const std::stop_token& stop, ReadAhead readAhead,
                            const Passwords& passwords)
{
    return translated([&] {
        if (readAhead == ReadAhead::Pages)
            if (auto sound = openSound(path, stop)) return OpenedDocument(std::move(*sound));
        return withPassword(
            passwords,
            [&](const std::string& password) {
                return openWhole({path, password, stop});
            },
            [](const OpenedDocument& opened) -> QPDF& { return *opened.qpdf; });
    });
}

} // namespace quillfern::pdf
