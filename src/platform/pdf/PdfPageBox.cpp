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

/// Finds the nearest usable box. A box that is none does not hide the one above it, but `isPlain` is false
/// then.
bool findBox(QPDFObjectHandle node, const char* key, QRectF& box, bool& isPlain)
{
    for (int depth = 0; depth < deepestPageTree && node.isDictionary(); ++depth) {
        QPDFObjectHandle value = node.getKey(key);
        if (readBox(value, box)) return true;
        isPlain = isPlain && value.isNull();
        node = node.getKey("/Parent");
    }
    box = QRectF();
    return false;
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

PdfPageBox::PdfPageBox(QPDFObjectHandle page, PageArea area)
{
    bool isPlain = true;
    stated_ = findBox(page, "/MediaBox", media_, isPlain) && isPlain;
    if (media_.isEmpty()) media_ = QRectF(0, 0, 612, 792);
    box_ = media_;
    if (area == PageArea::Visible) {
        QRectF crop;
        bool isCropPlain = true;
        const bool isFound = findBox(page, "/CropBox", crop, isCropPlain);
        areaStated_ = isCropPlain && (!isFound || media_.contains(crop));
        if (isFound && crop.intersects(media_)) box_ = crop & media_;
    }
    QPDFObjectHandle rotate = inheritedAttribute(page, "/Rotate");
    if (rotate.isNumber()) {
        const double degrees = rotate.getNumericValue();
        if (std::isfinite(degrees) && std::fmod(degrees, 90.0) == 0.0)
            rotation_ = (static_cast<int>(std::fmod(degrees, 360.0)) + 360) % 360;
    }
    QPDFObjectHandle unit = page.getKey("/UserUnit"); // not inheritable
    if (unit.isNumber() && unit.getNumericValue() > 0) unit_ = unit.getNumericValue();
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
