#pragma once

#include "stamps/IStampItem.h"

namespace quillfern {

/// What both kinds of stamps share: the fields of IStampItem.
class StampBase : public IStampItem
{
  public:
    void setIsSelected(bool selected) override { isSelected_ = selected; }
    [[nodiscard]] bool isSelected() const override { return isSelected_; }
    void setLabel(std::optional<QString> label) override { label_ = std::move(label); }
    [[nodiscard]] const std::optional<QString>& label() const override { return label_; }
    void setMarginAnchor(MarginAnchor anchor) override { marginAnchor_ = anchor; }
    [[nodiscard]] MarginAnchor marginAnchor() const override { return marginAnchor_; }
    void setIsDrawUnderPDFContent(bool under) override { isDrawUnderPDFContent_ = under; }
    [[nodiscard]] bool isDrawUnderPDFContent() const override { return isDrawUnderPDFContent_; }
    void setIsSymmetry(bool symmetric) override { isSymmetry_ = symmetric; }
    [[nodiscard]] bool isSymmetry() const override { return isSymmetry_; }

  protected:
    StampBase() = default;

    /// The five fields in their reading order, as every stamp's record begins to be read.
    void readShared(const store::Record& data);
    /// The same five, which end every stamp's record.
    void addShared(store::RecordBuilder& builder) const;

  private:
    bool isSelected_ = true;
    std::optional<QString> label_ = QString();
    MarginAnchor marginAnchor_ = MarginAnchor::None;
    bool isDrawUnderPDFContent_ = false;
    bool isSymmetry_ = false;
};

} // namespace quillfern
