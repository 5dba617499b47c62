#pragma once

#include "platform/drawing/Canvas.h"
#include "platform/pdf/PageArea.h"
#include "platform/pdf/Passwords.h"
#include "platform/pdf/ReadAhead.h"
#include "platform/system/Failure.h"
#include "platform/system/FilePath.h"

#include <QSizeF>
#include <QString>
#include <memory>
#include <optional>
#include <stop_token>

namespace quillfern::drawing {
class TextShaper;
}

namespace quillfern::store {
class AtomicFile;
}

namespace quillfern::pdf {

class PdfWriter;
class SharedCodings;

/// One page being stamped: its layers take the marks, finish() puts them on the page.
class PdfPage : public drawing::PageLayers
{
  public:
    /// Adds what was drawn to the page. Nothing is changed before. Throws Failure.
    virtual void finish() = 0;
};

/// A PDF file that is carried over whole: pages can be stamped or blanked, everything else (bookmarks, links,
/// forms, destinations, labels, attachments, tags, layers, metadata, encryption) stays as it is, and no
/// stream is decoded and encoded again unless its content is broken in a way that a stamp would make worse.
///
/// Owned and used by one thread. Pages are counted from 0. The source file is read until save() returns and
/// must not be written to meanwhile (replacing it by another file is fine).
class PdfDocument
{
  public:
    /// Opens a file that needs no password to be read, or one of these; repairs what can be repaired. Throws
    /// LockedDocument when it needs another password, Failure when it is no PDF file or is so damaged that a
    /// page would be lost. Once `stop` is stopped, this and everything that is done to the document later
    /// throws Cancelled. `codings` are shared with other documents that get the same stamps.
    [[nodiscard]] static std::unique_ptr<PdfDocument>
    open(const FilePath& path, const std::stop_token& stop = {}, ReadAhead readAhead = ReadAhead::Pages,
         const Passwords& passwords = {}, std::shared_ptr<SharedCodings> codings = {});
    ~PdfDocument();
    PdfDocument(const PdfDocument&) = delete;
    PdfDocument& operator=(const PdfDocument&) = delete;

    [[nodiscard]] int pageCount() const;
    /// What of a damaged file could not be had, in words for people; nothing when all is there.
    [[nodiscard]] std::optional<Reason> loss() const;
    /// Whether a signature field is signed, or the document is certified.
    [[nodiscard]] bool isSigned() const;
    /// Whether a signature no longer holds; known when the document is saved.
    [[nodiscard]] bool breaksSignature() const;
    /// Where stamps are placed from now on; on the whole page unless this is called.
    void setPageArea(PageArea area);
    /// Removes the encryption. Throws Failure when the password that opened the document does not permit
    /// that; see Passwords.
    void unlock();
    /// The page as its reader sees it, in points: its area, turned by /Rotate and scaled by /UserUnit.
    [[nodiscard]] QSizeF pageSize(int index) const;

    /// Begins to stamp a page; its canvases span its area in points, origin at the top left as it is read, y
    /// down. The page afterwards shows exactly its media box, or keeps its crop box where that is the area.
    /// The shaper must outlive the page.
    [[nodiscard]] std::unique_ptr<PdfPage> stampPage(int index, drawing::TextShaper& shaper);
    /// Removes content, resources, annotations (with their form fields), actions and metadata from a page;
    /// its media box and rotation stay, and it shows exactly that box, as a stamped page does.
    void blankPage(int index);
    /// Drops the pages from `count` on.
    void keepFirstPages(int count);
    /// Names the application that made the document, in the information dictionary and, where there are XMP
    /// metadata, there too.
    void setCreator(const QString& creator);

    /// Writes the whole document. Call once; the document is spent then. Throws Failure.
    void save(const PdfWriter& writer, store::AtomicFile& target);

  private:
    class Private;
    class StampedPage;
    explicit PdfDocument(std::unique_ptr<Private> data);
    std::unique_ptr<Private> d;
};

} // namespace quillfern::pdf
