#include "stamps/StampBase.h"

namespace quillfern {

void StampBase::readShared(const store::Record& data)
{
    isSelected_ = data.boolean(QStringLiteral("isSelected"));
    label_ = data.text(QStringLiteral("label"));
    marginAnchor_ = MarginAnchor{data.integer32(QStringLiteral("marginAnchor"))};
    isDrawUnderPDFContent_ = data.boolean(QStringLiteral("isDrawUnderPDFContent"));
    isSymmetry_ = data.boolean(QStringLiteral("isSymmetry"));
}

void StampBase::fillAbsentValues()
{
    if (!label_) label_ = QString();
}

void StampBase::addShared(store::RecordBuilder& builder) const
{
    builder.add(QStringLiteral("isSymmetry"), isSymmetry_)
        .add(QStringLiteral("isDrawUnderPDFContent"), isDrawUnderPDFContent_)
        .add(QStringLiteral("marginAnchor"), qToUnderlying(marginAnchor_))
        .add(QStringLiteral("label"), label_)
        .add(QStringLiteral("isSelected"), isSelected_);
}

} // namespace quillfern
