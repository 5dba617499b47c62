#pragma once

#include "config/Margins.h"
#include "config/StampListOperations.h"
#include "dialogs/FieldFormatters.h"

#include <QObject>
#include <functional>

class QLineEdit;

namespace quillfern {

namespace Ui {
class MainWindow;
}

/// The fields of the window that edit pages, numbers, margins and the preview's switches. Every keystroke
/// reaches the configuration at once; the field itself is put into form when editing ends. Main thread.
class NumberingForm final : public QObject
{
    Q_OBJECT

  public:
    /// `previewSize` is what percentages of margins refer to. Everything outlives the form.
    NumberingForm(Ui::MainWindow& ui, Numbering& number, std::function<QSizeF()> previewSize);

    /// Shows the configuration as it is, as after loading a profile.
    void refresh();

    void unitChanged();
    void isMarginPercentageChanged(bool inPercentage);
    void resetNumberCounters();
    void resetMargins();

  private:
    using Integer = std::int64_t;
    void bindInteger(NumberField& field, std::function<Integer()> get, std::function<void(Integer)> set,
                     std::optional<GuardTag> guard = {});
    void bindMargin(QLineEdit& field, std::function<double()> get, std::function<void(double)> set);
    void showMarginUnit();

    Ui::MainWindow& ui_;
    Numbering& number_;
    Margins margins_;
    std::function<QSizeF()> previewSize_;
    std::vector<std::function<void()>> show_; ///< one for each field
};

/// The number that a text begins with, written with a point; 0 when it begins with none.
[[nodiscard]] double leadingDecimal(const QString& text);
/// A length or percentage as a field shows it: at most four decimals, and no more than needed.
[[nodiscard]] QString decimalText(double value);

} // namespace quillfern
