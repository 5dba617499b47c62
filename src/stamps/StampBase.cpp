#include "stamps/StampBase.h"

#include "stamps/Placement.h"

namespace quillfern {

std::int32_t StampBase::getNextMarginAnchor(bool isSymmetric, std::int32_t anchor)
{
    if (!isSymmetric) return anchor;
    lastMarginAnchor_ = lastMarginAnchor_ == None ? anchor : mirroredAnchor(lastMarginAnchor_);
    return lastMarginAnchor_;
}

void StampBase::readShared(const Record& data)
{
    isSelected_ = data.boolean(QStringLiteral("isSelected"));
    label_ = data.text(QStringLiteral("label"));
    marginAnchor_ = data.integer32(QStringLiteral("marginAnchor"));
    isDrawUnderPDFContent_ = data.boolean(QStringLiteral("isDrawUnderPDFContent"));
    isSymmetry_ = data.boolean(QStringLiteral("isSymmetry"));
}

void StampBase::addShared(RecordBuilder& builder) const
{
    builder.add(QStringLiteral("isSymmetry"), isSymmetry_)
        .add(QStringLiteral("isDrawUnderPDFContent"), isDrawUnderPDFContent_)
        .add(QStringLiteral("marginAnchor"), marginAnchor_)
        .add(QStringLiteral("label"), label_)
        .add(QStringLiteral("isSelected"), isSelected_);
}

} // namespace quillfern
