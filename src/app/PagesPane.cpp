#include "app/PagesPane.h"

#include "config/StampListOperations.h"
#include "platform/system/Guarded.h"
#include "ui_PagesPane.h"

#include <QSignalBlocker>
#include <charconv>

namespace quillfern {

namespace {

constexpr std::int64_t largestNumber = 999'999'999;
constexpr int decimals = 4;

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

PagesPane::PagesPane(QWidget* parent) : QWidget(parent), ui_(std::make_unique<Ui::PagesPane>())
{
    ui_->setupUi(this);
    // Here, before the window is laid out: a pane behind another tab does not pass a new width on.
    ui_->pageRange->addItem(tr("All pages"), qToUnderlying(PageRange::AllPages));
    ui_->pageRange->addItem(tr("Odd pages"), qToUnderlying(PageRange::OddPages));
    ui_->pageRange->addItem(tr("Even pages"), qToUnderlying(PageRange::EvenPages));
    ui_->unitsPopup->addItem(tr("Points"), qToUnderlying(MarginUnit::Points));
    ui_->unitsPopup->addItem(tr("Millimetres"), qToUnderlying(MarginUnit::Millimetres));
    ui_->unitsPopup->addItem(tr("Inches"), qToUnderlying(MarginUnit::Inches));
}

PagesPane::~PagesPane() = default;

void PagesPane::edit(Numbering& number, std::function<QSizeF()> previewSize)
{
    number_ = &number;
    margins_.emplace(number);
    previewSize_ = std::move(previewSize);
    bindFields();
    connect(ui_->pageRange, &QComboBox::activated, this,
            [this] { number_->setPageRange(PageRange{ui_->pageRange->currentData().toInt()}); });
    connect(ui_->isContinuousNumbering, &QCheckBox::toggled, this,
            [this](bool on) { number_->setIsContinuousNumbering(on); });
    connect(ui_->unitsPopup, &QComboBox::activated, this, &PagesPane::unitChanged);
    connect(ui_->isMarginInPercentage, &QCheckBox::toggled, this, &PagesPane::isMarginPercentageChanged);
    connect(ui_->resetNumberCountersButton, &QPushButton::clicked, this, &PagesPane::resetNumberCounters);
    connect(ui_->resetMarginsButton, &QPushButton::clicked, this, &PagesPane::resetMargins);
    refresh();
}

void PagesPane::bindFields()
{
    Numbering* n = number_;
    bindInteger(
        *ui_->startPage, [n] { return n->startPage(); }, [n](Integer v) { n->setStartPage(v); },
        GuardTag::StartPage);
    bindInteger(
        *ui_->endPage, [n] { return n->endPage(); }, [n](Integer v) { n->setEndPage(v); });
    bindInteger(
        *ui_->startNumber, [n] { return n->startNumber(); }, [n](Integer v) { n->setStartNumber(v); });
    bindInteger(
        *ui_->numberSteps, [n] { return n->numberSteps(); }, [n](Integer v) { n->setNumberSteps(v); },
        GuardTag::NumberSteps);
    bindMargin(
        *ui_->marginTop, [n] { return n->marginTop(); }, [n](double v) { n->setMarginTop(v); });
    bindMargin(
        *ui_->marginLeft, [n] { return n->marginLeft(); }, [n](double v) { n->setMarginLeft(v); });
    bindMargin(
        *ui_->marginRight, [n] { return n->marginRight(); }, [n](double v) { n->setMarginRight(v); });
    bindMargin(
        *ui_->marginBottom, [n] { return n->marginBottom(); }, [n](double v) { n->setMarginBottom(v); });
}

void PagesPane::bindInteger(NumberField& field, std::function<Integer()> get,
                            std::function<void(Integer)> set, std::optional<GuardTag> guard)
{
    NumberField* shown = &field;
    field.setValidator(new CustomNumberFormatterInteger(largestNumber, shown));
    show_.emplace_back([shown, get] { shown->setIntegerValue(get()); });
    connect(shown, &QLineEdit::textEdited, this, [shown, set, guard](const QString& text) {
        QString number = text;
        if (guard) number = guardedInteger(*guard, text);
        if (number != text) {
            shown->setText(number);
            shown->setFocus();
            shown->selectAll(); // the next key replaces the number that was put there
        }
        if (!number.isEmpty()) set(leadingInteger(number));
    });
    connect(shown, &NumberField::integerEdited, this, [set](qint64 value) { set(value); });
}

void PagesPane::bindMargin(QLineEdit& field, std::function<double()> get, std::function<void(double)> set)
{
    QLineEdit* shown = &field;
    field.setValidator(new CustomNumberFormatterDecimal(shown));
    const auto show = [shown, get] {
        const QString text = decimalText(get());
        if (shown->text() != text) shown->setText(text);
    };
    show_.emplace_back(show);
    connect(shown, &QLineEdit::textEdited, this, [set](const QString& text) { set(leadingDecimal(text)); });
    connect(shown, &QLineEdit::editingFinished, this, show);
}

void PagesPane::refresh()
{
    // A value that is only shown must not be taken for an edit: it would be rounded, or converted twice.
    const QSignalBlocker blockers[] = {QSignalBlocker(ui_->isContinuousNumbering),
                                       QSignalBlocker(ui_->isMarginInPercentage)};
    for (const auto& show : show_)
        show();
    ui_->pageRange->setCurrentIndex(
        ui_->pageRange->findData(qToUnderlying(number_->pageRange()))); // none for an odd value
    ui_->unitsPopup->setCurrentIndex(ui_->unitsPopup->findData(qToUnderlying(number_->marginUnit())));
    ui_->isContinuousNumbering->setChecked(number_->isContinuousNumbering());
    ui_->isMarginInPercentage->setChecked(number_->isMarginInPercentage());
}

void PagesPane::unitChanged()
{
    guarded("Error in [unitChanged:] : %@", [this] {
        margins_->unitChanged(MarginUnit{ui_->unitsPopup->currentData().toInt()});
        refresh();
    });
}

void PagesPane::isMarginPercentageChanged(bool inPercentage)
{
    guarded("Error in [isMarginPercentageChanged:] : %@", [&] {
        number_->setIsMarginInPercentage(inPercentage);
        margins_->isMarginPercentageChanged(previewSize_());
        refresh();
    });
}

void PagesPane::resetNumberCounters()
{
    StampListOperations(*number_).resetNumberCounters();
    refresh();
}

void PagesPane::resetMargins()
{
    margins_->resetMargins();
    refresh();
}

} // namespace quillfern
