#include "platform/pdf/PdfDocument.h"

#include "platform/pdf/ContentScanner.h"
#include "platform/pdf/DocumentOpening.h"
#include "platform/pdf/EnclosedContent.h"
#include "platform/pdf/LibraryErrors.h"
#include "platform/pdf/PdfCanvas.h"
#include "platform/pdf/PdfForm.h"
#include "platform/pdf/PdfMetadata.h"
#include "platform/pdf/PdfPageBox.h"
#include "platform/pdf/PdfResources.h"
#include "platform/pdf/PdfWriter.h"
#include "platform/store/AtomicFile.h"
#include "platform/system/Cancellation.h"

#include <deque>
#include <map>
#include <qpdf/QPDF.hh>
#include <set>

namespace quillfern::pdf {

namespace {

std::vector<QPDFObjectHandle> contentStreams(QPDFObjectHandle page)
{
    QPDFObjectHandle contents = page.getKey("/Contents");
    std::vector<QPDFObjectHandle> streams;
    if (contents.isStream()) {
        streams.push_back(contents);
    } else if (contents.isArray()) {
        for (int i = 0; i < contents.getArrayNItems(); ++i) {
            QPDFObjectHandle item = contents.getArrayItem(i);
            if (item.isStream()) streams.push_back(item);
        }
    }
    return streams;
}

/// Stamped and blanked pages show exactly their media box.
void showWholeMediaBox(QPDFObjectHandle page, const PdfPageBox& box)
{
    const QRectF& media = box.mediaBox();
    const auto asArray = [&] {
        return QPDFObjectHandle::newFromRectangle(
            QPDFObjectHandle::Rectangle(media.left(), media.top(), media.right(), media.bottom()));
    };
    // Viewers differ on a page without a usable box; the stamp was placed on this one.
    if (!box.isStated()) page.replaceKey("/MediaBox", asArray());
    if (inheritedAttribute(page, "/CropBox").isNull()) return;
    page.removeKey("/CropBox");
    // An ancestor's crop box would come back; only the page's own overrules it.
    if (!inheritedAttribute(page, "/CropBox").isNull()) page.replaceKey("/CropBox", asArray());
}

} // namespace

class PdfDocument::Private
{
  public:
    Private(OpenedDocument opened, std::stop_token stopToken)
        : stop(std::move(stopToken)), document(std::move(opened)), qpdf(*document.qpdf),
          pages(document.pages), metadata(qpdf, stop), archivalPart(metadata.archivalPart()),
          isSigned(pdf::isSigned(qpdf)), resources(qpdf, archivalPart > 0 && !metadata.hasRgbOutputIntent()),
          scanner_(stop)
    {
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
    OpenedDocument document;
    QPDF& qpdf;
    std::vector<QPDFObjectHandle>& pages;
    PdfMetadata metadata;
    int archivalPart;
    bool isSigned;
    PdfResources resources;
    std::set<QPDFObjGen> widgetsToDrop;

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
    std::map<std::string, QPDFObjectHandle> forms_; ///< by content and surroundings
    qsizetype mendedBytes_ = 0;                     ///< that the scans in scans_ hold, at most
    QPDFObjectHandle saveState_;
};

QPDFObjectHandle PdfDocument::Private::saveState()
{
    if (!saveState_.isInitialized()) saveState_ = qpdf.newStream("q\n");
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
    // Pages that shared one dictionary share its extended copy; the original stays for everything else that
    // uses it.
    const std::pair key(present.isIndirect() ? present.getObjGen() : holder.getObjGen(), added.signature());
    QPDFObjectHandle& shared = sharedResources_[key];
    if (!shared.isInitialized()) shared = qpdf.makeIndirectObject(extended());
    return shared;
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
        if (!scan.mended.isEmpty()) pending.streams = {deflatedStream(qpdf, scan.mended)};
    }
    const bool wrap = !pending.over.empty() && !pending.streams.empty();
    if (!pending.under.empty())
        contents.appendItem(qpdf.newStream(pending.under + (wrap ? "q\n" : "")));
    else if (wrap)
        contents.appendItem(saveState());
    for (const QPDFObjectHandle& stream : pending.streams)
        contents.appendItem(stream);
    // The line feed ends a comment, or an escape, that the content ends in.
    if (!pending.over.empty())
        contents.appendItem(qpdf.newStream(wrap ? '\n' + closing + "Q\n" + pending.over : pending.over));
    pending.page.replaceKey("/Contents", contents);
}

/// Damaged content ends where its form ends.
void PdfDocument::Private::encloseAndStamp(Pending& pending, const ContentScanner::Result& scan)
{
    // Pages that share their content share its form.
    std::string key = formSurroundings(pending.page);
    for (const QPDFObjectHandle& stream : pending.streams)
        if (!key.empty()) key += stream.getObjGen().unparse(' ');
    QPDFObjectHandle form = key.empty() ? QPDFObjectHandle() : forms_[key];
    if (!form.isInitialized()) {
        if (scan.undecodable)
            form = pending.streams.front().copyStream();
        else if (scan.balance.unfinished) // anything behind it would become a part of it
            form = deflatedStream(qpdf, scan.mended);
        else
            form = deflatedStream(qpdf, scan.mended + '\n' + scan.balance.closing);
        makeForm(qpdf, pending.page, form);
        if (!key.empty()) forms_[key] = form;
        mendedBytes_ += scan.mended.size();
    }
    const std::string drawn = drawForm(pending.page, form);
    pending.page.replaceKey("/Contents", qpdf.newStream(pending.under + drawn + pending.over));
    if (mendedBytes_ > mostMendedBytes) forgetScans();
}

class PdfDocument::StampedPage final : public PdfPage
{
  public:
    StampedPage(Private& document, const QPDFObjectHandle& page, drawing::TextShaper& shaper)
        : document_(document), page_(page), box_(page), resources_(inheritedAttribute(page, "/Resources")),
          under_(document.resources, resources_, shaper, box_.toUserSpace()),
          over_(document.resources, resources_, shaper, box_.toUserSpace())
    {
    }

    drawing::Canvas& under() override { return under_; }
    drawing::Canvas& over() override { return over_; }

    void finish() override
    {
        translated([this] {
            showWholeMediaBox(page_, box_);
            if (!resources_.empty())
                page_.replaceKey("/Resources", document_.resourcesWith(page_, resources_));
            if (under_.content().empty() && over_.content().empty()) return;
            Private::Pending pending{page_, contentStreams(page_), {}, under_.content(), over_.content()};
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

std::unique_ptr<PdfDocument> PdfDocument::open(const FilePath& path, const std::stop_token& stop)
{
    return translated([&] {
        return std::unique_ptr<PdfDocument>(
            new PdfDocument(std::make_unique<Private>(openDocument(path, stop), stop)));
    });
}

int PdfDocument::pageCount() const
{
    return static_cast<int>(d->pages.size());
}

std::optional<Reason> PdfDocument::remark() const
{
    if (!d->isSigned) return d->document.loss;
    const Reason broken(
        QT_TRANSLATE_NOOP("quillfern::Failure", "The document's digital signature no longer holds."));
    if (!d->document.loss) return broken;
    Reason both = *d->document.loss;
    both.logged += QLatin1Char(' ') + broken.logged;
    both.shown += QLatin1Char(' ') + broken.shown;
    return both;
}

QSizeF PdfDocument::pageSize(int index) const
{
    return translated([&] { return PdfPageBox(d->pages.at(static_cast<std::size_t>(index))).displaySize(); });
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
        showWholeMediaBox(page, PdfPageBox(page));
    });
}

void PdfDocument::keepFirstPages(int count)
{
    translated([&] {
        d->settleAll();
        for (; pageCount() > count; d->pages.pop_back()) {
            throwIfCancelled(d->stop);
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
        writer.write(d->qpdf, d->resources.usesTransparency(), target, d->stop);
    });
}

} // namespace quillfern::pdf
