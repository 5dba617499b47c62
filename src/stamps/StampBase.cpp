#include "stamps/StampBase.h"

namespace quillfern {

StampBase::~StampBase() = default;

StampBase::StampBase(const StampBase& other)
    : IStampItem(other), isSelected_(other.isSelected_), label_(other.label_),
      marginAnchor_(other.marginAnchor_), isDrawUnderPDFContent_(other.isDrawUnderPDFContent_),
      isSymmetry_(other.isSymmetry_)
{
}

void StampBase::closeEditor()
{
    if (!editor_) return;
    // Out of the field first: closing a window may come back here.
    const auto editor = std::move(editor_);
    editor->invalidate();
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
