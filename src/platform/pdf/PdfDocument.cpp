#include "platform/pdf/PdfDocument.h"

#include "platform/pdf/ContentScanner.h"
#include "platform/pdf/DocumentChanges.h"
#include "platform/pdf/FileInput.h"
#include "platform/pdf/NewObjects.h"
#include "platform/pdf/PdfCanvas.h"
#include "platform/pdf/PdfMetadata.h"
#include "platform/pdf/PdfPageBox.h"
#include "platform/pdf/PdfResources.h"
#include "platform/pdf/PdfWriter.h"
#include "platform/pdf/PlainStreams.h"
#include "platform/store/AtomicFile.h"
#include "platform/system/Failure.h"

#include <deque>
#include <optional>
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFExc.hh>
#include <set>
#include <unordered_map>
#include <system_error>

namespace quillfern::pdf {

namespace {

constexpr auto damaged = QT_TRANSLATE_NOOP("quillfern::Failure", "The document is damaged beyond repair.");

[[noreturn]] void refuse(const QPDFExc& exception)
{
    if (exception.getErrorCode() == qpdf_e_password)
        throw Failure(QT_TRANSLATE_NOOP("quillfern::Failure", "The document needs a password."));
    throw Failure(Reason(damaged).with(QString::fromStdString(exception.getMessageDetail())));
}

/// Runs work on a document and turns the exceptions of its library into Failure.
template <class Work>
auto translated(Work&& work)
{
    try {
        return work();
    } catch (const QPDFExc& exception) {
        refuse(exception);
    } catch (const std::system_error&) {
        throw; // the system's lack (of a thread, say) and not the document's
    } catch (const std::logic_error& error) {
        throw Failure(Reason(damaged).with(QString::fromUtf8(error.what())));
    } catch (const std::runtime_error& error) {
        throw Failure(Reason(damaged).with(QString::fromUtf8(error.what())));
    }
}

/// The streams of the page's content. Those that can be read straight from the file are not resolved.
std::vector<QPDFObjectHandle> contentStreams(QPDFObjectHandle page, PlainStreams& plain)
{
    QPDFObjectHandle contents = page.getKey("/Contents");
    const auto isStream = [&plain](QPDFObjectHandle& object) {
        return object.isIndirect() && (plain.isPlain(object.getObjGen()) || object.isStream());
    };
    std::vector<QPDFObjectHandle> streams;
    if (isStream(contents)) {
        streams.push_back(contents);
    } else if (contents.isArray()) {
        for (int i = 0; i < contents.getArrayNItems(); ++i) {
            QPDFObjectHandle item = contents.getArrayItem(i);
            if (isStream(item)) streams.push_back(item);
        }
    }
    return streams;
}

} // namespace

namespace {

/// Corrects the counts of a node of the page tree and of those below it and returns the node's. `counted`
/// holds the nodes seen so far, so that a tree with a cycle is not followed for ever.
int correctCount(QPDFObjectHandle node, std::set<QPDFObjGen>& counted)
{
    if (!node.isDictionary()) return 0;
    QPDFObjectHandle kids = node.getKey("/Kids");
    if (!kids.isArray()) return 1;
    if (!counted.insert(node.getObjGen()).second) return 0;
    int sum = 0;
    for (int i = 0; i < kids.getArrayNItems(); ++i)
        sum += correctCount(kids.getArrayItem(i), counted);
    node.replaceKey("/Count", QPDFObjectHandle::newInteger(sum));
    return sum;
}

} // namespace

class PdfDocument::Private
{
  public:
    explicit Private(const FilePath& path) : source(std::make_shared<FileInput>(path))
    {
        qpdf.setSuppressWarnings(true);
        qpdf.processInputSource(source, "");
        plain.emplace(qpdf, *source);
        scanner_.emplace(*plain);
        pages = qpdf.getAllPages();
        if (!parentsLeadUp()) {
            changes.noteRebuilt();
            qpdf.pushInheritedAttributesToPage();
        }
        // Viewers rely on the count in the page tree, so a wrong one is corrected.
        QPDFObjectHandle root = qpdf.getRoot().getKey("/Pages");
        QPDFObjectHandle count = root.getKey("/Count");
        std::set<QPDFObjGen> counted;
        if (!count.isInteger() || count.getIntValue() != static_cast<long long>(pages.size())) {
            changes.noteRebuilt();
            correctCount(root, counted);
        }
        if (pages.empty())
            throw Failure(QT_TRANSLATE_NOOP("quillfern::Failure", "The document has no pages."));
        objects.emplace(qpdf, changes.isRebuilt() || qpdf.anyWarnings());
        metadata.emplace(qpdf, changes, *objects);
        archivalPart = metadata->archivalPart();
        resources.emplace(*objects, archivalPart > 0 && !metadata->hasRgbOutputIntent());
    }

    /// A page whose marks are drawn and whose own content is still being read.
    struct Pending
    {
        QPDFObjectHandle page;
        std::vector<QPDFObjectHandle> streams;
        std::shared_ptr<ContentScanner::Scan> scan; ///< null when nothing follows the content
        std::string under;
        std::string over;
    };

    void add(Pending pending);
    void settleOldest();
    void settleAll();
    std::shared_ptr<ContentScanner::Scan> scanOf(const std::vector<QPDFObjectHandle>& streams);
    QPDFObjectHandle resourcesWith(const QPDFObjectHandle& page, const PdfPageResources& added);

    std::shared_ptr<FileInput> source;
    QPDF qpdf;
    DocumentChanges changes;
    std::optional<NewObjects> objects;
    std::optional<PlainStreams> plain;
    std::vector<QPDFObjectHandle> pages;
    std::optional<PdfMetadata> metadata;
    std::optional<PdfResources> resources;
    int archivalPart = 0;
    std::set<QPDFObjGen> widgetsToDrop;

  private:
    /// Whether every page's chain of /Parent leads to the root in a few steps. Where it does not, the
    /// attributes that pages inherit can only be found from the root down, as viewers find them.
    bool parentsLeadUp();
    QPDFObjectHandle saveState();

    static constexpr std::size_t mostPending = 256;
    std::deque<Pending> pending_;
    std::optional<ContentScanner> scanner_;
    std::map<std::vector<QPDFObjGen>, std::shared_ptr<ContentScanner::Scan>> scans_;
    std::map<std::pair<QPDFObjGen, std::string>, QPDFObjectHandle> sharedResources_;
    std::unordered_map<std::string, QPDFObjectHandle> equalResources_; ///< by their text
    QPDFObjectHandle saveState_;
};

bool PdfDocument::Private::parentsLeadUp()
{
    constexpr int usualDepth = 32;
    QPDFObjGen root = qpdf.getRoot().getKey("/Pages").getObjGen();
    std::set<QPDFObjGen> known{root};
    for (const QPDFObjectHandle& page : pages) {
        std::vector<QPDFObjGen> chain;
        QPDFObjectHandle parent = QPDFObjectHandle(page).getKey("/Parent");
        while (known.count(parent.getObjGen()) == 0) {
            if (!parent.isDictionary() || chain.size() > usualDepth) return false;
            chain.push_back(parent.getObjGen());
            parent = parent.getKey("/Parent");
        }
        known.insert(chain.begin(), chain.end());
    }
    return true;
}

QPDFObjectHandle PdfDocument::Private::saveState()
{
    if (!saveState_.isInitialized()) saveState_ = objects->addStream("q\n");
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
    if (scans_.size() >= 4 * mostPending) scans_.clear();
    return scans_.emplace(std::move(key), scanner_->scan(streams)).first->second;
}

QPDFObjectHandle PdfDocument::Private::resourcesWith(const QPDFObjectHandle& page,
                                                     const PdfPageResources& added)
{
    QPDFObjectHandle holder;
    QPDFObjectHandle present = inheritedAttribute(page, "/Resources", &holder);
    const bool own = !present.isIndirect() && holder.isInitialized() && holder.isSameObjectAs(page);
    const auto extended = [&] {
        QPDFObjectHandle copy =
            present.isDictionary() ? present.shallowCopy() : QPDFObjectHandle::newDictionary();
        added.addTo(copy);
        return copy;
    };
    if (own || !present.isDictionary()) return extended();
    // Pages that shared one dictionary, or had equal ones, share its extended copy; the original stays for
    // everything else that uses it.
    const std::pair key(present.isIndirect() ? present.getObjGen() : holder.getObjGen(), added.signature());
    QPDFObjectHandle& shared = sharedResources_[key];
    if (shared.isInitialized()) return shared;
    QPDFObjectHandle copy = extended();
    QPDFObjectHandle& equal = equalResources_[copy.unparse()];
    if (!equal.isInitialized()) equal = objects->add(copy);
    return shared = equal;
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
    QPDFObjectHandle contents = QPDFObjectHandle::newArray();

    std::string closing;
    if (pending.scan) {
        const ContentScanner::Result& scan = scanner_->resultOf(*pending.scan);
        closing = scan.balance.closing.toStdString();
        if (!scan.mended.isEmpty()) pending.streams = {objects->addDeflated(scan.mended)};
    }
    const bool wrap = !pending.over.empty() && !pending.streams.empty();
    if (!pending.under.empty())
        contents.appendItem(objects->addStream(pending.under + (wrap ? "q\n" : "")));
    else if (wrap)
        contents.appendItem(saveState());
    for (const QPDFObjectHandle& stream : pending.streams)
        contents.appendItem(stream);
    // The line feed ends a comment, or an escape, that the content ends in.
    if (!pending.over.empty())
        contents.appendItem(objects->addStream(wrap ? '\n' + closing + "Q\n" + pending.over : pending.over));
    pending.page.replaceKey("/Contents", contents);
}

class PdfDocument::StampedPage final : public PdfPage
{
  public:
    StampedPage(Private& document, const QPDFObjectHandle& page, drawing::TextShaper& shaper)
        : document_(document), page_(page), box_(page), resources_(inheritedAttribute(page, "/Resources")),
          under_(*document.resources, resources_, shaper, box_.toUserSpace()),
          over_(*document.resources, resources_, shaper, box_.toUserSpace())
    {
    }

    drawing::Canvas& under() override { return under_; }
    drawing::Canvas& over() override { return over_; }

    void finish() override
    {
        translated([this] {
            document_.changes.noteChanged(page_);
            showWholeMediaBox();
            if (!resources_.empty())
                page_.replaceKey("/Resources", document_.resourcesWith(page_, resources_));
            if (under_.content().empty() && over_.content().empty()) return;
            Private::Pending pending{
                page_, contentStreams(page_, *document_.plain), {}, under_.content(), over_.content()};
            if (!pending.over.empty() && !pending.streams.empty())
                pending.scan = document_.scanOf(pending.streams);
            document_.add(std::move(pending));
        });
    }

  private:
    void showWholeMediaBox()
    {
        // Viewers differ on a page without a usable box; the stamp was placed on this one.
        if (!box_.isStated()) page_.replaceKey("/MediaBox", mediaBox());
        if (inheritedAttribute(page_, "/CropBox").isNull()) return;
        page_.removeKey("/CropBox");
        // An ancestor's crop box would come back; only the page's own overrules it.
        if (!inheritedAttribute(page_, "/CropBox").isNull()) page_.replaceKey("/CropBox", mediaBox());
    }

    [[nodiscard]] QPDFObjectHandle mediaBox() const
    {
        const QRectF& media = box_.mediaBox();
        return QPDFObjectHandle::newFromRectangle(
            QPDFObjectHandle::Rectangle(media.left(), media.top(), media.right(), media.bottom()));
    }

    Private& document_;
    QPDFObjectHandle page_;
    PdfPageBox box_;
    PdfPageResources resources_;
    PdfCanvas under_;
    PdfCanvas over_;
};

PdfDocument::PdfDocument(std::unique_ptr<Private> data) : d(std::move(data))
{
}
PdfDocument::~PdfDocument() = default;

std::unique_ptr<PdfDocument> PdfDocument::open(const FilePath& path)
{
    return translated(
        [&] { return std::unique_ptr<PdfDocument>(new PdfDocument(std::make_unique<Private>(path))); });
}

int PdfDocument::pageCount() const
{
    return static_cast<int>(d->pages.size());
}

QSizeF PdfDocument::pageSize(int index) const
{
    return translated([&] { return PdfPageBox(d->pages.at(static_cast<std::size_t>(index))).displaySize(); });
}

std::unique_ptr<PdfPage> PdfDocument::stampPage(int index, drawing::TextShaper& shaper)
{
    return translated([&]() -> std::unique_ptr<PdfPage> {
        return std::make_unique<StampedPage>(*d, d->pages.at(static_cast<std::size_t>(index)), shaper);
    });
}

void PdfDocument::blankPage(int index)
{
    translated([&] {
        d->changes.noteRebuilt(); // what was on the page must not remain in the file
        QPDFObjectHandle page = d->pages.at(static_cast<std::size_t>(index));
        QPDFObjectHandle annotations = page.getKey("/Annots");
        if (annotations.isArray())
            for (int i = 0; i < annotations.getArrayNItems(); ++i)
                if (annotations.getArrayItem(i).isIndirect())
                    d->widgetsToDrop.insert(annotations.getArrayItem(i).getObjGen());
        for (const char* key : {"/Contents", "/Annots", "/Thumb", "/B", "/AA", "/PieceInfo", "/StructParents",
                                "/Group", "/Metadata", "/Trans", "/AF"})
            page.removeKey(key);
        page.replaceKey("/Resources", QPDFObjectHandle::newDictionary());
    });
}

void PdfDocument::keepFirstPages(int count)
{
    translated([&] {
        d->settleAll();
        while (pageCount() > count) {
            d->changes.noteRebuilt();
            d->qpdf.removePage(d->pages.back());
            d->pages = d->qpdf.getAllPages();
        }
    });
}

void PdfDocument::setCreator(const QString& creator)
{
    translated([&] { d->metadata->setCreator(creator); });
}

namespace {

/// `array` without the objects in `gone`.
QPDFObjectHandle without(QPDFObjectHandle array, const std::set<QPDFObjGen>& gone)
{
    QPDFObjectHandle kept = QPDFObjectHandle::newArray();
    for (const QPDFObjectHandle& item : array.getArrayAsVector())
        if (!gone.count(item.getObjGen())) kept.appendItem(item);
    return kept;
}

/// Removes the form fields all of whose widgets were on blanked pages, and the fields that only grouped such
/// fields: a form must not require a field that is shown nowhere. A field that is also shown elsewhere only
/// loses the widgets on blanked pages.
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
        if (!parent.isDictionary() || !parent.getKey("/Kids").isArray()) continue;
        const QPDFObjectHandle kept = without(parent.getKey("/Kids"), gone);
        parent.replaceKey("/Kids", kept);
        if (QPDFObjectHandle(kept).getArrayNItems() == 0 && gone.insert(parent.getObjGen()).second)
            queue.push_back(parent.getObjGen());
    }
    for (const char* list : {"/Fields", "/CO"})
        if (form.getKey(list).isArray()) form.replaceKey(list, without(form.getKey(list), gone));
}

} // namespace

void PdfDocument::save(const PdfWriter& writer, store::AtomicFile& target)
{
    translated([&] {
        d->settleAll();
        dropFormFields(d->qpdf, d->widgetsToDrop);
        d->resources->finish();
        // The first archival profile forbids transparency, so the claim would be false.
        if (d->archivalPart == 1 && d->resources->usesTransparency()) d->metadata->withdrawArchivalClaim();
        if (d->resources->usesTransparency()) d->changes.noteTransparency();
        writer.write(d->qpdf, d->changes, *d->objects, *d->source, target);
    });
}

} // namespace quillfern::pdf
