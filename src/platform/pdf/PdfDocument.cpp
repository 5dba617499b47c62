#include "platform/pdf/PdfDocument.h"

#include "platform/pdf/LibraryErrors.h"
#include "platform/pdf/PdfCanvas.h"
#include "platform/pdf/PdfDocumentPrivate.h"
#include "platform/pdf/PdfPageBox.h"
#include "platform/pdf/PdfWriter.h"
#include "platform/store/AtomicFile.h"
#include "platform/system/Cancellation.h"

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
                page_.replaceKey("/Resources", document_.extendedResources.with(page_, resources_));
            if (under_.content().empty() && over_.content().empty()) return;
            Private::Pending pending;
            pending.page = page_;
            pending.streams = contentStreams(page_, document_.plain);
            pending.under = under_.content();
            pending.over = over_.content();
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

/// A page that is text until the document is written.
class PdfDocument::PlainStampedPage final : public PdfPage
{
  public:
    PlainStampedPage(Private& document, const PlainPage& page, drawing::TextShaper& shaper)
        : document_(document), page_(page), resources_(document.extendedResources.namesFor(page)),
          under_(document.resources, resources_, shaper, page.box.toUserSpace()),
          over_(document.resources, resources_, shaper, page.box.toUserSpace())
    {
    }

    drawing::Canvas& under() override { return under_; }
    drawing::Canvas& over() override { return over_; }

    void finish() override
    {
        translated([this] {
            Private::Pending pending;
            pending.plain = &page_;
            pending.under = under_.content();
            pending.over = over_.content();
            if (!resources_.empty()) pending.resources = document_.extendedResources.with(page_, resources_);
            if (!pending.over.empty() && page_.contentCount > 0) pending.scan = document_.scanOf(page_);
            document_.add(std::move(pending));
        });
    }

  private:
    Private& document_;
    const PlainPage& page_;
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
    return static_cast<int>(d->plainPages() ? d->plainPages()->pages().size() : d->pages.size());
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
    // Pages that are text are known by their media boxes.
    if (area != PageArea::Whole) translated([&] { d->makeObjects(); });
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
    if (d->plainPages())
        return d->plainPages()->pages().at(static_cast<std::size_t>(index)).box.displaySize();
    return translated(
        [&] { return PdfPageBox(d->pages.at(static_cast<std::size_t>(index)), d->area).displaySize(); });
}

std::unique_ptr<PdfPage> PdfDocument::stampPage(int index, drawing::TextShaper& shaper)
{
    return translated([&]() -> std::unique_ptr<PdfPage> {
        throwIfCancelled(d->stop);
        if (d->plainPages())
            return std::make_unique<PlainStampedPage>(
                *d, d->plainPages()->pages().at(static_cast<std::size_t>(index)), shaper);
        return std::make_unique<StampedPage>(*d, d->pages.at(static_cast<std::size_t>(index)), shaper);
    });
}

void PdfDocument::blankPage(int index)
{
    translated([&] {
        throwIfCancelled(d->stop);
        d->changes.noteRebuilt(); // what was on the page must not remain in the file
        d->makeObjects();
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
        if (pageCount() > count) d->makeObjects();
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
        const EditedDocument edited{d->qpdf, d->changes, d->objects, *d->document.input};
        if (writer.writesAnew(edited)) d->makeObjects();
        if (d->changes.isRebuilt()) readEverything(d->document);
        if (d->isUnlocked)
            RewritingPdfWriter(Encryption::Removed).write(edited, target, d->stop);
        else
            writer.write(edited, target, d->stop);
    });
}

} // namespace quillfern::pdf
