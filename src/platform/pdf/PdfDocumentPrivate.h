#pragma once

#include "platform/pdf/ContentScanner.h"
#include "platform/pdf/DocumentChanges.h"
#include "platform/pdf/DocumentOpening.h"
#include "platform/pdf/ExtendedResources.h"
#include "platform/pdf/NewObjects.h"
#include "platform/pdf/PdfDocument.h"
#include "platform/pdf/PdfForm.h"
#include "platform/pdf/PdfMetadata.h"
#include "platform/pdf/PdfResources.h"
#include "platform/pdf/PlainDocument.h"
#include "platform/pdf/PlainStreams.h"

#include <deque>
#include <map>
#include <memory>
#include <qpdf/QPDF.hh>
#include <set>
#include <string>
#include <vector>

namespace quillfern::pdf {

/// An open document with what its pages share while they are stamped.
class PdfDocument::Private
{
  public:
    Private(OpenedDocument opened, std::stop_token stopToken, std::shared_ptr<SharedCodings> sharedCodings)
        : stop(std::move(stopToken)), codings(std::move(sharedCodings)), document(std::move(opened)),
          qpdf(*document.qpdf), pages(document.pages), objects(qpdf, document.firstFreeNumber),
          plain(*document.plain), metadata(qpdf, changes, objects, stop),
          archivalPart(metadata.archivalPart()), signatures(pdf::signaturesOf(qpdf)),
          resources(objects, *codings, archivalPart > 0 && !metadata.hasRgbOutputIntent()),
          extendedResources(qpdf, objects), scanner_(plain, stop)
    {
        if (!document.isSound) changes.noteRebuilt();
        if (plainPages() && plainPages()->isEveryReferenceSound()) changes.noteSoundReferences();
    }

    /// A page whose marks are drawn and whose own content is still being read.
    struct Pending
    {
        QPDFObjectHandle page;
        std::vector<QPDFObjectHandle> streams;
        std::shared_ptr<ContentScanner::Scan> scan; ///< null when nothing follows the content
        std::string under;
        std::string over;
        const PlainPage* plain = nullptr; ///< instead of `page` and `streams`
        std::string resources;            ///< of such a page, empty where they stay
    };

    /// The pages as text; null where they are objects of the library.
    [[nodiscard]] const PlainDocument* plainPages() const { return document.plainPages.get(); }
    /// Makes all pages objects of the library.
    void makeObjects();

    void add(Pending pending);
    void settleOldest();
    void settleAll();
    std::shared_ptr<ContentScanner::Scan> scanOf(const std::vector<QPDFObjectHandle>& streams);
    std::shared_ptr<ContentScanner::Scan> scanOf(const PlainPage& page);

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
    ExtendedResources extendedResources;
    std::set<QPDFObjGen> widgetsToDrop;
    PageArea area = PageArea::Whole;
    bool isUnlocked = false;

  private:
    QPDFObjectHandle saveState();
    void settlePlain(Pending& pending);
    void encloseAndStamp(Pending& pending, const ContentScanner::Result& scan);
    /// Makes a page, which then is an object of the library, of one that is text.
    void makeObject(Pending& pending);

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
    std::map<std::string, QPDFObjectHandle> forms_; ///< by content and surroundings
    qsizetype mendedBytes_ = 0;                     ///< that the scans in scans_ hold, at most
    QPDFObjectHandle saveState_;
    std::unique_ptr<PlainDocument> completed_;
};

} // namespace quillfern::pdf
