#pragma once

#include <QLineEdit>
#include <QString>
#include <QValidator>
#include <QWidget>
#include <cstdint>

namespace quillfern {

/// Accepts digits only, and no more of them than `maximum` has. Empty text is accepted while typing.
class CustomNumberFormatterInteger final : public QValidator
{
    Q_OBJECT

  public:
    explicit CustomNumberFormatterInteger(std::int64_t maximum, QObject* parent = nullptr);

    State validate(QString& partial, int& position) const override;

  private:
    qsizetype mostDigits_;
};

/// Accepts digits and points only, any number of points; the reader of the number stops at the second point.
class CustomNumberFormatterDecimal final : public QValidator
{
    Q_OBJECT

  public:
    using QValidator::QValidator;

    State validate(QString& partial, int& position) const override;
};

/// Accepts any text of at most so many characters.
class CustomTextFieldFormatter final : public QValidator
{
    Q_OBJECT

  public:
    using QValidator::QValidator;

    void setMaximumLength(std::int32_t maxLength) { maxLength_ = maxLength; }
    [[nodiscard]] std::int32_t maxLength() const { return maxLength_; }

    /// A text that is too long, as when pasted, is refused whole.
    State validate(QString& partial, int& position) const override;

  private:
    std::int32_t maxLength_ = 2147483647;
};

/// A field for a whole number. When editing ends its text becomes the number that the text begins with, 0 for
/// a text that begins with none.
class NumberField final : public QLineEdit
{
    Q_OBJECT

  public:
    explicit NumberField(QWidget* parent = nullptr);

    /// The number the text begins with, as far as 64 bits hold it.
    [[nodiscard]] std::int64_t integerValue() const;
    void setIntegerValue(std::int64_t value);

  Q_SIGNALS:
    /// Editing has ended; the field shows `value`.
    void integerEdited(qint64 value);
};

/// The whole number that a text begins with, blanks aside; 0 when it begins with none. What 64 bits cannot
/// hold becomes the nearest that they can.
[[nodiscard]] std::int64_t leadingInteger(const QString& text);

/// The two fields that always hold a number above 0, also while the user types. The values are the fields'
/// tags.
enum class GuardTag {
    NumberSteps = 30001,
    StartPage = 30002,
};

/// What a guarded field shows after the user typed `text`: the text without what is not a digit at its ends;
/// for a text that is empty or begins with the number 0, the field's own smallest number (2 for the step, 1
/// for the first page).
[[nodiscard]] QString guardedInteger(GuardTag tag, const QString& text);

} // namespace quillfern
