#include "platform/pdf/PdfPageBox.h"

#include <algorithm>
#include <cmath>

namespace quillfern::pdf {

namespace {

constexpr int deepestPageTree = 200;

bool readBox(QPDFObjectHandle array, QRectF& box)
{
    if (!array.isArray() || array.getArrayNItems() < 4) return false;
    double v[4];
    for (int i = 0; i < 4; ++i) {
        QPDFObjectHandle item = array.getArrayItem(i);
        if (!item.isNumber()) return false;
        v[i] = item.getNumericValue();
        if (!std::isfinite(v[i])) return false;
    }
    box = QRectF(QPointF(std::min(v[0], v[2]), std::min(v[1], v[3])),
                 QPointF(std::max(v[0], v[2]), std::max(v[1], v[3])));
    return box.width() > 0 && box.height() > 0;
}

} // namespace

QPDFObjectHandle inheritedAttribute(QPDFObjectHandle page, const std::string& key, QPDFObjectHandle* holder)
{
    for (int depth = 0; depth < deepestPageTree && page.isDictionary(); ++depth) {
        QPDFObjectHandle value = page.getKey(key);
        if (!value.isNull()) {
            if (holder) *holder = page;
            return value;
        }
        page = page.getKey("/Parent");
    }
    return QPDFObjectHandle::newNull();
}

PdfPageBox::PdfPageBox(QPDFObjectHandle page)
{
    // A box that is none does not hide the one above it.
    bool usable = false;
    QPDFObjectHandle node = page;
    for (int depth = 0; depth < deepestPageTree && node.isDictionary() && !usable; ++depth) {
        QPDFObjectHandle value = node.getKey("/MediaBox");
        usable = readBox(value, box_);
        stated_ = stated_ && (usable || value.isNull());
        node = node.getKey("/Parent");
    }
    stated_ = stated_ && usable;
    if (!usable) box_ = QRectF(0, 0, 612, 792);
    QPDFObjectHandle rotate = inheritedAttribute(page, "/Rotate");
    if (rotate.isNumber()) setRotation(rotate.getNumericValue());
    QPDFObjectHandle unit = page.getKey("/UserUnit"); // not inheritable
    if (unit.isNumber() && unit.getNumericValue() > 0) unit_ = unit.getNumericValue();
}

PdfPageBox::PdfPageBox(const QRectF& mediaBox, double rotation, double unit) : box_(mediaBox), unit_(unit)
{
    setRotation(rotation);
}

void PdfPageBox::setRotation(double degrees)
{
    if (std::isfinite(degrees) && std::fmod(degrees, 90.0) == 0.0)
        rotation_ = (static_cast<int>(std::fmod(degrees, 360.0)) + 360) % 360;
}

QSizeF PdfPageBox::displaySize() const
{
    const QSizeF size = box_.size() * unit_;
    return rotation_ % 180 == 0 ? size : size.transposed();
}

QTransform PdfPageBox::toUserSpace() const
{
    const double s = 1 / unit_;
    const double x0 = box_.left();
    const double y0 = box_.top(); // the lower edge: user space has y up
    const double x1 = box_.right();
    const double y1 = box_.bottom();
    switch (rotation_) {
    case 90: // the lower left corner is shown at the top left
        return {0, s, s, 0, x0, y0};
    case 180:
        return {-s, 0, 0, s, x1, y0};
    case 270:
        return {0, -s, -s, 0, x1, y1};
    default:
        return {s, 0, 0, -s, x0, y1};
    }
}

} // namespace quillfern::pdf
