#include "app/NumberingForm.h"

#include "dialogs/FieldFormatters.h"
#include "platform/system/Guarded.h"
#include "ui_MainWindow.h"

#include <QSignalBlocker>
#include <charconv>

namespace quillfern {

namespace {

constexpr std::int64_t largestNumber = 999'999'999;
constexpr int decimals = 4;

// The two fields that never stay without a sensible number while they are typed in.
constexpr int numberStepsTag = 30001;
constexpr int startPageTag = 30002;

} // namespace

double leadingDecimal(const QString& text)
{
    const QByteArray bytes = text.trimmed().toLatin1();
    double value = 0;
    std::from_chars(bytes.constData(), bytes.constData() + bytes.size(), value, std::chars_format::fixed);
    return value;
}

QString decimalText(double value)
{
    QString text = QString::number(value, 'f', decimals);
    if (!text.contains(u'.')) return text; // a value that is not finite
    while (text.endsWith(u'0'))
        text.chop(1);
    if (text.endsWith(u'.')) text.chop(1);
    return text;
}

NumberingForm::NumberingForm(Ui::MainWindow& ui, Numbering& number, std::function<QSizeF()> previewSize)
    : ui_(ui), number_(number), margins_(number), previewSize_(std::move(previewSize))
{
    ui.pageRange->addItem(tr("All pages"), AllPages);
    ui.pageRange->addItem(tr("Odd pages"), OddPages);
    ui.pageRange->addItem(tr("Even pages"), EvenPages);
    ui.unitsPopup->addItem(tr("Points"), Points);
    ui.unitsPopup->addItem(tr("Millimetres"), Millimetres);
    ui.unitsPopup->addItem(tr("Inches"), Inches);

    bindInteger(*ui.startPage, &Numbering::startPage, &Numbering::setStartPage, startPageTag);
    bindInteger(*ui.endPage, &Numbering::endPage, &Numbering::setEndPage);
    bindInteger(*ui.startNumber, &Numbering::startNumber, &Numbering::setStartNumber);
    bindInteger(*ui.numberSteps, &Numbering::numberSteps, &Numbering::setNumberSteps, numberStepsTag);
    bindMargin(*ui.marginTop, &Numbering::marginTop, &Numbering::setMarginTop);
    bindMargin(*ui.marginLeft, &Numbering::marginLeft, &Numbering::setMarginLeft);
    bindMargin(*ui.marginRight, &Numbering::marginRight, &Numbering::setMarginRight);
    bindMargin(*ui.marginBottom, &Numbering::marginBottom, &Numbering::setMarginBottom);

    connect(ui.pageRange, &QComboBox::activated, this,
            [this] { number_.setPageRange(ui_.pageRange->currentData().toInt()); });
    connect(ui.isContinuousNumbering, &QCheckBox::toggled, this,
            [this](bool on) { number_.setIsContinuousNumbering(on); });
    connect(ui.isHighlightStamp, &QCheckBox::toggled, this,
            [this](bool on) { number_.setIsHighlightStamp(on); });
    connect(ui.isLivePreview, &QCheckBox::toggled, this, [this](bool on) { number_.setIsLivePreview(on); });
    connect(ui.unitsPopup, &QComboBox::activated, this, &NumberingForm::unitChanged);
    connect(ui.isMarginInPercentage, &QCheckBox::toggled, this, &NumberingForm::isMarginPercentageChanged);
    connect(ui.resetNumberCountersButton, &QPushButton::clicked, this, &NumberingForm::resetNumberCounters);
    connect(ui.resetMarginsButton, &QPushButton::clicked, this, &NumberingForm::resetMargins);
    refresh();
}

void NumberingForm::bindInteger(NumberField& field, Integer (Numbering::*get)() const,
                                void (Numbering::*set)(Integer), int guardTag)
{
    field.setValidator(new CustomNumberFormatterInteger(largestNumber, &field));
    show_.emplace_back([this, &field, get] { field.setIntegerValue((number_.*get)()); });
    connect(&field, &QLineEdit::textEdited, this, [this, &field, set, guardTag](const QString& text) {
        QString number = text;
        if (guardTag != 0) number = guardedInteger(guardTag, text);
        if (number != text) {
            field.setText(number);
            field.setFocus();
            field.selectAll(); // typing goes on in place of the number that was put there
        }
        if (!number.isEmpty()) (number_.*set)(leadingInteger(number));
    });
    connect(&field, &NumberField::integerEdited, this, [this, set](qint64 value) { (number_.*set)(value); });
}

void NumberingForm::bindMargin(QLineEdit& field, double (Numbering::*get)() const,
                               void (Numbering::*set)(double))
{
    field.setValidator(new CustomNumberFormatterDecimal(&field));
    const auto show = [this, &field, get] {
        const QString text = decimalText((number_.*get)());
        if (field.text() != text) field.setText(text);
    };
    show_.emplace_back(show);
    connect(&field, &QLineEdit::textEdited, this,
            [this, set](const QString& text) { (number_.*set)(leadingDecimal(text)); });
    connect(&field, &QLineEdit::editingFinished, this, show);
}

void NumberingForm::refresh()
{
    // What is only shown must not come back as an edit: it would be rounded, or converted twice.
    const QSignalBlocker blockers[] = {
        QSignalBlocker(ui_.isContinuousNumbering), QSignalBlocker(ui_.isHighlightStamp),
        QSignalBlocker(ui_.isLivePreview), QSignalBlocker(ui_.isMarginInPercentage)};
    for (const auto& show : show_)
        show();
    ui_.pageRange->setCurrentIndex(ui_.pageRange->findData(number_.pageRange())); // none for an odd value
    ui_.unitsPopup->setCurrentIndex(ui_.unitsPopup->findData(number_.marginUnit));
    ui_.isContinuousNumbering->setChecked(number_.isContinuousNumbering());
    ui_.isHighlightStamp->setChecked(number_.isHighlightStamp());
    ui_.isLivePreview->setChecked(number_.isLivePreview());
    ui_.isMarginInPercentage->setChecked(number_.isMarginInPercentage);
}

void NumberingForm::unitChanged()
{
    guarded("Error in [unitChanged:] : %@", [this] {
        margins_.unitChanged(ui_.unitsPopup->currentData().toInt());
        refresh();
    });
}

void NumberingForm::isMarginPercentageChanged(bool inPercentage)
{
    guarded("Error in [isMarginPercentageChanged:] : %@", [&] {
        number_.isMarginInPercentage = inPercentage;
        margins_.isMarginPercentageChanged(previewSize_());
        refresh();
    });
}

void NumberingForm::resetNumberCounters()
{
    StampListOperations(number_).resetNumberCounters();
    refresh();
}

void NumberingForm::resetMargins()
{
    margins_.resetMargins();
    refresh();
}

} // namespace quillfern
