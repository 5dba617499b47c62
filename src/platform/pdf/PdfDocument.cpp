#include "platform/pdf/PdfDocument.h"

#include "platform/pdf/ContentScanner.h"
#include "platform/pdf/DocumentChanges.h"
#include "platform/pdf/DocumentOpening.h"
#include "platform/pdf/EnclosedContent.h"
#include "platform/pdf/LibraryErrors.h"
#include "platform/pdf/NewObjects.h"
#include "platform/pdf/PdfCanvas.h"
#include "platform/pdf/PdfForm.h"
#include "platform/pdf/PdfMetadata.h"
#include "platform/pdf/PdfPageBox.h"
#include "platform/pdf/PdfResources.h"
#include "platform/pdf/PdfWriter.h"
#include "platform/pdf/PlainStreams.h"
#include "platform/store/AtomicFile.h"
#include "platform/system/Cancellation.h"

#include <deque>
#include <map>
#include <qpdf/QPDF.hh>
#include <set>
#include <unordered_map>

namespace quillfern::pdf {

namespace {

/// Stamped and blanked pages show exactly their media box, or keep their crop box.
void showArea(QPDFObjectHandle page, const PdfPageBox& box, PageArea area)
{
    const auto asArray = [](const QRectF& rect) {
        return QPDFObjectHandle::newFromRectangle(
            QPDFObjectHandle::Rectangle(rect.left(), rect.top(), rect.right(), rect.bottom()));
    };
    // Viewers differ on a page without a usable box; the stamp was placed on this one.
    if (!box.isStated()) page.replaceKey("/MediaBox", asArray(box.mediaBox()));
    if (area == PageArea::Visible) {
        if (!box.isAreaStated()) page.replaceKey("/CropBox", asArray(box.area()));
        return;
    }
    if (inheritedAttribute(page, "/CropBox").isNull()) return;
    page.removeKey("/CropBox");
    // An ancestor's crop box would come back; only the page's own overrules it.
    if (!inheritedAttribute(page, "/CropBox").isNull()) page.replaceKey("/CropBox", asArray(box.mediaBox()));
}

} // namespace

class PdfDocument::Private
{
  public:
    Private(OpenedDocument opened, std::stop_token stopToken, std::shared_ptr<SharedCodings> sharedCodings)
        : stop(std::move(stopToken)), codings(std::move(sharedCodings)), document(std::move(opened)),
          qpdf(*document.qpdf), pages(document.pages), objects(qpdf, document.isReadWhole),
          plain(*document.plain), metadata(qpdf, changes, objects, stop),
          archivalPart(metadata.archivalPart()), signatures(pdf::signaturesOf(qpdf)),
          resources(objects, *codings, archivalPart > 0 && !metadata.hasRgbOutputIntent()),
          scanner_(plain, stop)
    {
        if (!document.isSound) changes.noteRebuilt();
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

    std::stop_token stop;
    std::shared_ptr<SharedCodings> codings;
    OpenedDocument document;
    QPDF& qpdf;
    std::vector<QPDFObjectHandle>& pages;
    DocumentChanges changes;
    NewObjects objects;
    PlainStreams& plain;
    PdfMetadata metadata;
    int archivalPart;
    Signatures signatures;
    PdfResources resources;
    std::set<QPDFObjGen> widgetsToDrop;
    PageArea area = PageArea::Whole;
    bool isUnlocked = false;

  private:
    QPDFObjectHandle saveState();
    void encloseAndStamp(Pending& pending, const ContentScanner::Result& scan);

    void forgetScans()
    {
        scans_.clear();
        mendedBytes_ = 0;
    }

    static constexpr std::size_t mostPending = 256;
    static constexpr qsizetype mostMendedBytes = qsizetype{64} << 20;
    std::deque<Pending> pending_;
    ContentScanner scanner_;
    std::map<std::vector<QPDFObjGen>, std::shared_ptr<ContentScanner::Scan>> scans_;
    std::map<std::pair<QPDFObjGen, std::string>, QPDFObjectHandle> sharedResources_;
    std::unordered_map<std::string, QPDFObjectHandle> equalResources_; ///< by their text
    std::map<std::string, QPDFObjectHandle> forms_;                    ///< by content and surroundings
    qsizetype mendedBytes_ = 0; ///< that the scans in scans_ hold, at most
    QPDFObjectHandle saveState_;
};

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
    if (!equal.isInitialized()) equal = objects.add(copy);
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

class PdfDocument::StampedPage final : public PdfPage
{
  public:
    StampedPage(Private& document, const QPDFObjectHandle& page, drawing::TextShaper& shaper)
        : document_(document), page_(page), box_(page, document.area),
          resources_(inheritedAttribute(page, "/Resources")),
          under_(document.resources, resources_, shaper, box_.toUserSpace()),
          over_(document.resources, resources_, shaper, box_.toUserSpace())
    {
    }

    drawing::Canvas& under() override { return under_; }
    drawing::Canvas& over() override { return over_; }

    void finish() override
    {
        translated([this] {
            document_.changes.noteChanged(page_);
            showArea(page_, box_, document_.area);
            if (!resources_.empty())
                page_.replaceKey("/Resources", document_.resourcesWith(page_, resources_));
            if (under_.content().empty() && over_.content().empty()) return;
            Private::Pending pending{
                page_, contentStreams(page_, document_.plain), {}, under_.content(), over_.content()};
            if (!pending.over.empty() && !pending.streams.empty())
                pending.scan = document_.scanOf(pending.streams);
            document_.add(std::move(pending));
        });
    }

  private:
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

std::unique_ptr<PdfDocument> PdfDocument::open(const FilePath& path, const std::stop_token& stop,
                                               ReadAhead readAhead, const Passwords& passwords,
                                               std::shared_ptr<SharedCodings> codings)
{
    if (!codings) codings = std::make_shared<SharedCodings>();
    return translated([&] {
        return std::unique_ptr<PdfDocument>(new PdfDocument(std::make_unique<Private>(
            openDocument(path, stop, readAhead, passwords), stop, std::move(codings))));
    });
}

int PdfDocument::pageCount() const
{
    return static_cast<int>(d->pages.size());
}

std::optional<Reason> PdfDocument::loss() const
{
    return d->document.loss;
}

bool PdfDocument::isSigned() const
{
    return d->signatures.isSigned;
}

bool PdfDocument::breaksSignature() const
{
    // An appended revision leaves the signed one as it is, but a certified document may not be changed.
    return d->signatures.isCertified || (d->signatures.isSigned && d->changes.isRebuilt());
}

void PdfDocument::setPageArea(PageArea area)
{
    d->area = area;
}

void PdfDocument::unlock()
{
    translated([&] {
        if (!d->qpdf.isEncrypted()) return;
        if (!d->qpdf.ownerPasswordMatched())
            throw Failure(QT_TRANSLATE_NOOP(
                "quillfern::Failure",
                "The document's encryption was not removed: that takes the password for permissions (the "
                "owner's), and the password that was given only opens it."));
        d->changes.noteRebuilt();
        d->isUnlocked = true;
    });
}

QSizeF PdfDocument::pageSize(int index) const
{
    return translated(
        [&] { return PdfPageBox(d->pages.at(static_cast<std::size_t>(index)), d->area).displaySize(); });
}

std::unique_ptr<PdfPage> PdfDocument::stampPage(int index, drawing::TextShaper& shaper)
{
    return translated([&]() -> std::unique_ptr<PdfPage> {
        throwIfCancelled(d->stop);
        return std::make_unique<StampedPage>(*d, d->pages.at(static_cast<std::size_t>(index)), shaper);
    });
}

void PdfDocument::blankPage(int index)
{
    translated([&] {
        throwIfCancelled(d->stop);
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
        showArea(page, PdfPageBox(page, d->area), d->area);
    });
}

void PdfDocument::keepFirstPages(int count)
{
    translated([&] {
        d->settleAll();
        for (; pageCount() > count; d->pages.pop_back()) {
            throwIfCancelled(d->stop);
            d->changes.noteRebuilt();
            d->qpdf.removePage(d->pages.back());
        }
    });
}

void PdfDocument::setCreator(const QString& creator)
{
    translated([&] { d->metadata.setCreator(creator); });
}

void PdfDocument::save(const PdfWriter& writer, store::AtomicFile& target)
{
    translated([&] {
        d->settleAll();
        if (!d->widgetsToDrop.empty()) dropFormFields(d->qpdf, d->widgetsToDrop);
        d->resources.finish();
        // The first archival profile forbids transparency, so the claim would be false.
        if (d->archivalPart == 1 && d->resources.usesTransparency()) d->metadata.withdrawArchivalClaim();
        if (d->resources.usesTransparency()) d->changes.noteTransparency();
        if (d->changes.isRebuilt()) readEverything(d->document);
        const EditedDocument edited{d->qpdf, d->changes, d->objects, *d->document.input};
        if (d->isUnlocked)
            RewritingPdfWriter(Encryption::Removed).write(edited, target, d->stop);
        else
            writer.write(edited, target, d->stop);
    });
}

} // namespace quillfern::pdf
