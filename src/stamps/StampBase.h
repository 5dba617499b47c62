#pragma once

#include "platform/store/Record.h"
#include "stamps/IStampItem.h"

#include <QString>
#include <cstdint>
#include <optional>
#include <utility>

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
    /// Fills the label; a stamp with more values that can be absent calls this from its own.
    void fillAbsentValues() override;

  protected:
    StampBase() = default;

    /// Reads the five shared fields, which every stamp reads from a record before its own fields.
    void readShared(const store::Record& data);
    /// Appends the five shared fields, the last entries of every stamp's record.
    void addShared(store::RecordBuilder& builder) const;

  private:
    bool isSelected_ = true;
    std::optional<QString> label_ = QString();
    MarginAnchor marginAnchor_ = MarginAnchor::None;
    bool isDrawUnderPDFContent_ = false;
    bool isSymmetry_ = false;
};

} // namespace quillfern
