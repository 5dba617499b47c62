#pragma once

#include "config/Margins.h"
#include "config/Numbering.h"
#include "dialogs/FieldFormatters.h"

#include <QLineEdit>
#include <QSizeF>
#include <QString>
#include <QWidget>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace quillfern {

namespace Ui {
class PagesPane;
}

/// The part of the window that edits pages, numbers and margins. Every keystroke reaches the configuration at
/// once; the field's own text is completed when editing ends. Main thread.
class PagesPane final : public QWidget
{
    Q_OBJECT

  public:
    explicit PagesPane(QWidget* parent = nullptr);
    ~PagesPane() override;

    /// Begins to edit this configuration; to be called once. `previewSize` is what percentages of margins
    /// refer to. Both outlive the pane.
    void edit(Numbering& number, std::function<QSizeF()> previewSize);
    /// Shows the configuration as it is now, as after loading a profile.
    void refresh();

    void unitChanged();
    void isMarginPercentageChanged(bool inPercentage);
    void resetNumberCounters();
    void resetMargins();

  private:
    using Integer = std::int64_t;
    void bindFields();
    void bindInteger(NumberField& field, std::function<Integer()> get, std::function<void(Integer)> set,
                     std::optional<GuardTag> guard = {});
    void bindMargin(QLineEdit& field, std::function<double()> get, std::function<void(double)> set);

    std::unique_ptr<Ui::PagesPane> ui_;
    Numbering* number_ = nullptr;
    std::optional<Margins> margins_;
    std::function<QSizeF()> previewSize_;
    std::vector<std::function<void()>> show_; ///< one for each field
};

/// The number that a text begins with, written with a point; 0 when it begins with none.
[[nodiscard]] double leadingDecimal(const QString& text);
/// A length or percentage as a field shows it: at most four decimals, and no more than needed.
[[nodiscard]] QString decimalText(double value);

} // namespace quillfern
