#pragma once

#include <QRectF>
#include <QSizeF>
#include <QTransform>
#include <qpdf/QPDFObjectHandle.hh>
#include <string>

namespace quillfern::pdf {

/// The media box of a page and how a viewer turns and scales it (ISO 32000-1, 7.7.3.3 and 14.11.2).
class PdfPageBox
{
  public:
    /// Reads the box, its rotation and its unit from the page or what it inherits from. A box that is empty
    /// or no rectangle counts as missing, a missing one as US Letter, and a rotation that is no multiple of
    /// 90 degrees as none.
    explicit PdfPageBox(QPDFObjectHandle page);
    PdfPageBox() = default;
    /// A stated box, in the page's own space, with what the page states as /Rotate and /UserUnit.
    PdfPageBox(const QRectF& mediaBox, double rotation, double unit);

    /// The page as its reader sees it, in points: turned by /Rotate and scaled by /UserUnit.
    [[nodiscard]] QSizeF displaySize() const;
    /// From the reader's space (points, origin at the top left of the shown page, y down) to the page's own.
    [[nodiscard]] QTransform toUserSpace() const;
    /// The media box in the page's own space, lower left corner first.
    [[nodiscard]] const QRectF& mediaBox() const { return box_; }
    /// False when the page itself or all that it inherits from states no usable box, and viewers may show
    /// another than mediaBox().
    [[nodiscard]] bool isStated() const { return stated_; }

  private:
    void setRotation(double degrees);

    QRectF box_;
    int rotation_ = 0;
    double unit_ = 1;
    bool stated_ = true;
};

/// The value of an inheritable page attribute: the page's own, or its nearest ancestor's; null when none has
/// it. `holder` receives the dictionary that has it.
[[nodiscard]] QPDFObjectHandle inheritedAttribute(QPDFObjectHandle page, const std::string& key,
                                                  QPDFObjectHandle* holder = nullptr);

} // namespace quillfern::pdf
