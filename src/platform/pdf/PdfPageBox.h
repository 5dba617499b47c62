#pragma once

#include "platform/pdf/PageArea.h"

#include <QRectF>
#include <QSizeF>
#include <QTransform>
#include <qpdf/QPDFObjectHandle.hh>
#include <string>

namespace quillfern::pdf {

/// A box of a page in which stamps are placed, and how a viewer turns and scales it (ISO 32000-1, 7.7.3.3 and
/// 14.11.2).
class PdfPageBox
{
  public:
    /// Reads the media box, and with PageArea::Visible what the crop box shows of it (all of it where there
    /// is no usable crop box inside). Reads a box, its rotation and its unit from the page or what it
    /// inherits from. A box that is empty or no rectangle counts as missing, a missing one as US Letter, and
    /// a rotation that is no multiple of 90 degrees as none.
    explicit PdfPageBox(QPDFObjectHandle page, PageArea area = PageArea::Whole);

    /// The area as its reader sees it, in points: turned by /Rotate and scaled by /UserUnit.
    [[nodiscard]] QSizeF displaySize() const;
    /// From the reader's space (points, origin at the top left of the area as shown, y down) to the page's
    /// own.
    [[nodiscard]] QTransform toUserSpace() const;
    /// The media box in the page's own space, lower left corner first.
    [[nodiscard]] const QRectF& mediaBox() const { return media_; }
    /// The area in the page's own space, likewise.
    [[nodiscard]] const QRectF& area() const { return box_; }
    /// False when the page itself or all that it inherits from states no usable box, and viewers may show
    /// another than mediaBox().
    [[nodiscard]] bool isStated() const { return stated_; }
    /// False when the page has a crop box that is none or reaches beyond the media box, and viewers may show
    /// another part than area().
    [[nodiscard]] bool isAreaStated() const { return areaStated_; }

  private:
    QRectF media_;
    QRectF box_; ///< of the area
    int rotation_ = 0;
    double unit_ = 1;
    bool stated_ = true;
    bool areaStated_ = true;
};

/// The value of an inheritable page attribute: the page's own, or its nearest ancestor's; null when none has
/// it. `holder` receives the dictionary that has it.
[[nodiscard]] QPDFObjectHandle inheritedAttribute(QPDFObjectHandle page, const std::string& key,
                                                  QPDFObjectHandle* holder = nullptr);

} // namespace quillfern::pdf
