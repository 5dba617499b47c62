#pragma once

#include "platform/drawing/Canvas.h"
#include "platform/store/Record.h"
#include "stamps/FillIns.h"
#include "stamps/MarginAnchor.h"

#include <QRectF>
#include <QString>
#include <cstdint>
#include <memory>
#include <optional>

namespace quillfern {

/// What the stamp list, the compositor and the editors know of a stamp, whatever its kind.
///
/// A stamp is edited on the main thread. Drawing does not change a stamp, so that several threads may draw a
/// stamp that nobody edits; what changes from page to page is in a StampRun.
class IStampItem
{
  public:
    virtual ~IStampItem() = default;

    virtual void setIsSelected(bool selected) = 0; ///< whether the stamp is used at all
    [[nodiscard]] virtual bool isSelected() const = 0;
    virtual void setLabel(std::optional<QString> label) = 0; ///< a name for people; not drawn
    [[nodiscard]] virtual const std::optional<QString>& label() const = 0;
    virtual void setMarginAnchor(MarginAnchor anchor) = 0;
    [[nodiscard]] virtual MarginAnchor marginAnchor() const = 0;
    virtual void setIsDrawUnderPDFContent(bool under) = 0; ///< on PDF pages, beneath the page's own content
    [[nodiscard]] virtual bool isDrawUnderPDFContent() const = 0;
    virtual void setIsSymmetry(bool symmetric) = 0; ///< left and right alternate on successive pages
    [[nodiscard]] virtual bool isSymmetry() const = 0;

    /// Applies a record: a missing key gives false, 0 or no value. A null pointer changes nothing.
    virtual void setData(const store::Record* data) = 0;
    /// The stamp as a record, whose entries end before the first absent value. Returns no record on a
    /// failure.
    [[nodiscard]] virtual std::optional<store::Record> getData() const = 0;
    /// Gives every absent text, colour and picture the value that draws the same (an empty text, black, no
    /// bytes), so that the stamp's next record is whole.
    virtual void fillAbsentValues() = 0;

    /// A new stamp with the same settings.
    [[nodiscard]] virtual std::unique_ptr<IStampItem> clone() const = 0;

    /// The stamp with the words of its template filled in, for one document; null for a stamp that has none
    /// to fill in, and is drawn as it is.
    [[nodiscard]] virtual std::unique_ptr<IStampItem> filledIn(const FillIns&) const { return nullptr; }

    /// Draws the stamp inside `rect`, the area inside the margins (points, y down). `marginAnchor` comes from
    /// StampRun::getNextMarginAnchor(). A failure is logged and leaves the page without the stamp.
    virtual void draw(drawing::Canvas& canvas, const QRectF& rect, MarginAnchor marginAnchor,
                      std::int64_t pageNumber, std::int64_t totalPages, bool isHighLightStamp) const = 0;

    /// Throws Failure when a stamp that shows text can be drawn on no page, because no font is installed.
    virtual void requireFont(drawing::TextShaper&) const {}

    /// One line that distinguishes the stamp from others in a list.
    [[nodiscard]] virtual QString description() const = 0;
};

} // namespace quillfern
