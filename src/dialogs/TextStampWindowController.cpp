#include "dialogs/TextStampWindowController.h"

#include "dialogs/FieldFormatters.h"
#include "platform/drawing/FontCatalog.h"
#include "platform/system/Guarded.h"
#include "ui_TextStampWindow.h"

#include <QFontDatabase>
#include <array>
#include <utility>

namespace quillfern {

namespace {

constexpr double smallestFont = 1;
constexpr double largestFont = 1000; ///< points
constexpr int mostPadding = 99;
constexpr int samplePixels = 15; ///< the sample shows the face, not the size
constexpr int samplePages[] = {1, 9, 10};
constexpr int sampleTotal = 120;

} // namespace

TextStampWindowController::TextStampWindowController(const std::shared_ptr<TextStamp>& stamp,
                                                     Numbering& number, StampHost& host, ColorPanel& colors,
                                                     QWidget* parent)
    : StampEditorWindow(stamp, number, host, true, parent), ui_(std::make_unique<Ui::TextStampWindow>()),
      colors_(&colors)
{
    ui_->setupUi(this);
    alignForms(*ui_->leftColumn);
    alignForms(*ui_->rightColumn);
    connectShared(sharedControls(*ui_));
    connectTextControls();
    connectFontControls();
    ui_->numberFormatTextField->setFocus();
}

TextStampWindowController::~TextStampWindowController() = default;

void TextStampWindowController::connectTextControls()
{
    auto* oneCharacter = new CustomTextFieldFormatter(this);
    oneCharacter->setMaximumLength(1);
    ui_->paddingCharacterTextField->setValidator(oneCharacter);
    ui_->paddingLengthSpinBox->setNaturalRange(0, mostPadding);

    connect(ui_->numberFormatTextField, &QLineEdit::textEdited, this, [this](const QString& pattern) {
        change([&](TextStamp& s) { s.number.numberFormat = pattern; });
    });
    connect(ui_->insertPageButton, &QPushButton::clicked, this,
            [this] { insertSlot(QStringLiteral("{0}")); });
    connect(ui_->insertTotalButton, &QPushButton::clicked, this,
            [this] { insertSlot(QStringLiteral("{1}")); });
    connect(ui_->numberTypePopup, &QComboBox::activated, this,
            [this](int type) { change([&](TextStamp& s) { s.number.numberType = NumberType{type}; }); });
    connect(ui_->paddingLengthSpinBox, &ExactSpinBox::edited, this, [this](double length) {
        change([&](TextStamp& s) { s.number.paddingLength = static_cast<std::int64_t>(length); });
    });
    connect(ui_->paddingCharacterTextField, &QLineEdit::textEdited, this, [this](const QString& character) {
        change([&](TextStamp& s) { s.number.paddingCharacter = character; });
    });
    ui_->textOpacityField->setSubject(tr("Opacity"), QStringLiteral("textOpacityLabel"));
    connect(ui_->textOpacityField, &OpacityField::edited, this,
            [this](qint64 percent) { change([&](TextStamp& s) { s.textOpacity = percent; }); });
    ui_->rotationField->setDecimals(2);
    connect(ui_->rotationField, &RotationField::edited, this,
            [this](double degrees) { change([&](TextStamp& s) { s.textRotation = degrees; }); });
    ui_->outlineWidthSpinBox->setNaturalRange(0, 100);
    connect(ui_->outlineWidthSpinBox, &ExactSpinBox::edited, this, [this](double percent) {
        change([&](TextStamp& s) { s.outlineWidth = static_cast<std::int64_t>(percent); });
    });
    ui_->outlineOpacityField->setSubject(tr("Opacity of the outline"), QStringLiteral("outlineOpacityLabel"));
    connect(ui_->outlineOpacityField, &OpacityField::edited, this,
            [this](qint64 percent) { change([&](TextStamp& s) { s.outlineOpacity = percent; }); });
    connect(ui_->outlineColorButton, &QPushButton::clicked, this,
            &TextStampWindowController::outlineColorAction);
}

void TextStampWindowController::connectFontControls()
{
    ui_->fontsPopup->setFonts(number().fonts());
    ui_->fontSizeSpinBox->setNaturalRange(smallestFont, largestFont, 2);
    connect(ui_->fontsPopup, &FontMenu::familyChosen, this, &TextStampWindowController::fontChanged);
    connect(ui_->fontSizeSpinBox, &ExactSpinBox::edited, this,
            [this](double points) { change([&](TextStamp& s) { s.font.fontSize = points; }); });
    connect(ui_->boldFontCheckbox, &QCheckBox::clicked, this,
            [this](bool on) { change([&](TextStamp& s) { s.isBold = on; }); });
    connect(ui_->italicFontCheckbox, &QCheckBox::clicked, this,
            [this](bool on) { change([&](TextStamp& s) { s.isItalic = on; }); });
    connect(ui_->underlineCheckbox, &QCheckBox::clicked, this, [this](bool on) {
        change([&](TextStamp& s) { s.isUnderline = on; });
        ui_->underlineStylePopup->setEnabled(on);
    });
    connect(ui_->underlineStylePopup, &QComboBox::activated, this,
            [this](int style) { change([&](TextStamp& s) { s.underlineStyle = UnderlineStyle{style}; }); });
    connect(ui_->embedFontCheckbox, &QCheckBox::clicked, this,
            [this](bool on) { change([&](TextStamp& s) { s.isEmbedFont = on; }); });
    connect(ui_->textColorButton, &QPushButton::clicked, this, &TextStampWindowController::textColorAction);
}

QString TextStampWindowController::title() const
{
    return tr("Text Stamp Properties [ %1 ]").arg(text()->description());
}

void TextStampWindowController::showFields()
{
    const TextStamp& stamp = *text();
    showText(*ui_->numberFormatTextField, stamp.number.numberFormat);
    // For a value without an entry the menu shows none; the value stays until another is chosen.
    const auto select = [](QComboBox& menu, std::int32_t entry) {
        menu.setCurrentIndex(entry >= 0 && entry < menu.count() ? entry : -1);
    };
    select(*ui_->numberTypePopup, qToUnderlying(stamp.number.numberType));
    ui_->paddingLengthSpinBox->showNumber(static_cast<double>(stamp.number.paddingLength));
    showText(*ui_->paddingCharacterTextField, stamp.number.paddingCharacter);
    showSample();

    ui_->fontsPopup->showFamily(stamp.font.fontName.value_or(QString()));
    updateFontTraitsStatus();
    ui_->fontSizeSpinBox->showNumber(stamp.font.fontSize);
    ui_->boldFontCheckbox->setChecked(stamp.isBold);
    ui_->italicFontCheckbox->setChecked(stamp.isItalic);
    ui_->underlineCheckbox->setChecked(stamp.isUnderline);
    ui_->underlineStylePopup->setEnabled(stamp.isUnderline);
    select(*ui_->underlineStylePopup, qToUnderlying(stamp.underlineStyle));
    ui_->embedFontCheckbox->setChecked(stamp.isEmbedFont);
    ui_->textColorButton->showColor(stamp.font.fontColor.value_or(Qt::black));

    ui_->textOpacityField->showPercent(stamp.textOpacity);
    ui_->rotationField->showDegrees(stamp.textRotation);
    ui_->outlineWidthSpinBox->showNumber(static_cast<double>(stamp.outlineWidth));
    ui_->outlineColorButton->showColor(stamp.outlineColor.value_or(Qt::black));
    ui_->outlineOpacityField->showPercent(stamp.outlineOpacity);
}

void TextStampWindowController::change(const std::function<void(TextStamp&)>& edit)
{
    if (!editedStamp()) return;
    edit(*text());
    showSample();
    settingsChanged();
}

void TextStampWindowController::insertSlot(const QString& slot)
{
    ui_->numberFormatTextField->setFocus();
    ui_->numberFormatTextField->insert(slot); // at the caret, in place of what is selected
}

void TextStampWindowController::showSample()
{
    if (!text()) return;
    const NumberFormat& format = text()->number;
    const QFont face = drawing::FontCatalog().font(
        {text()->font.fontName.value_or(QString()), text()->isBold, text()->isItalic}, samplePixels);
    const std::array<QLabel*, 3> cells = {ui_->sampleFirstLabel, ui_->sampleNinthLabel,
                                          ui_->sampleTenthLabel};
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const QString sample = numberText(format, samplePages[i], sampleTotal);
        cells[i]->setFont(face);
        cells[i]->setText(sample);
        cells[i]->setToolTip(tr("Page %1 of %2: %3").arg(samplePages[i]).arg(sampleTotal).arg(sample));
        cells[i]->setAccessibleName(cells[i]->toolTip());
    }
    ui_->paddingLengthSpinBox->setEnabled(format.numberType == NumberType::Numbers);
    ui_->paddingCharacterTextField->setEnabled(format.numberType == NumberType::Numbers);
    const QString advice = format.numberType == NumberType::PlainText
                               ? QString()
                               : templateAdvice(format.numberFormat.value_or(QString()));
    ui_->templateAdviceLabel->setText(advice);
    ui_->templateAdviceLabel->setToolTip(advice);
}

void TextStampWindowController::fontChanged(int row)
{
    guarded("Error in [fontChanged:] : %@", [&] {
        const std::vector<PDFFont>& fonts = number().fonts();
        if (!editedStamp() || row < 0 || static_cast<std::size_t>(row) >= fonts.size()) return;
        const PDFFont& chosen = fonts[static_cast<std::size_t>(row)];
        number().beginUpdate();
        PDFFont& font = text()->font;
        font.fontID = chosen.fontID;
        font.fontName = chosen.fontName;
        font.isStandard = chosen.isStandard;
        settingsChanged();
        updateFontTraitsStatus();
        showSample();
    });
}

void TextStampWindowController::updateFontTraitsStatus()
{
    guarded("Error in updateFontTraitsStatus : %@", [this] {
        if (!text()) return;
        const QString family = text()->font.fontName.value_or(QString());
        const QString drawn = drawing::FontCatalog().resolveFamily(family);
        const FontTraits traits = traitsOf(QFontDatabase::styles(drawn));
        ui_->boldFontCheckbox->setEnabled(traits.bold);
        ui_->italicFontCheckbox->setEnabled(traits.italic);
        const QString substitute =
            drawn == family ? QString() : tr("“%1” is not installed; %2 is used.").arg(family, drawn);
        ui_->substituteLabel->setText(substitute);
        ui_->substituteLabel->setToolTip(substitute);
    });
}

void TextStampWindowController::textColorAction()
{
    if (!editedStamp()) return;
    pickColor(tr("Text Colour"), text()->font.fontColor.value_or(Qt::black),
              &TextStampWindowController::textColorChanged);
}

void TextStampWindowController::outlineColorAction()
{
    if (!editedStamp()) return;
    pickColor(tr("Outline Colour"), text()->outlineColor.value_or(Qt::black),
              &TextStampWindowController::outlineColorChanged);
}

void TextStampWindowController::textColorChanged(const QColor& color)
{
    ui_->textColorButton->showColor(color);
    change([&](TextStamp& s) { s.font.fontColor = color; });
}

void TextStampWindowController::outlineColorChanged(const QColor& color)
{
    ui_->outlineColorButton->showColor(color);
    change([&](TextStamp& s) { s.outlineColor = color; });
}

void TextStampWindowController::pickColor(const QString& title, const QColor& color,
                                          void (TextStampWindowController::*picked)(const QColor&))
{
    if (colors_)
        colors_->show(this, title, color, [this, picked](const QColor& now) { (this->*picked)(now); });
}

void TextStampWindowController::closePanels()
{
    if (colors_) colors_->closeFor(this);
}

FontTraits traitsOf(const QStringList& styles)
{
    FontTraits traits;
    for (const QString& style : styles) {
        traits.bold |= style.toUpper().contains(QLatin1String("BOLD"));
        traits.italic |= style.toUpper().contains(QLatin1String("ITALIC"));
    }
    return traits;
}

QString templateAdvice(const QString& pattern)
{
    const qsizetype page = pattern.indexOf(QLatin1String("{0}"));
    const qsizetype total = pattern.indexOf(QLatin1String("{1}"));
    const qsizetype slots = pattern.count(QLatin1String("{0}")) + pattern.count(QLatin1String("{1}"));
    if (slots > 2)
        return TextStampWindowController::tr(
            "Only the first two slots are filled; the others print nothing.");
    if (total >= 0 && page < 0)
        return TextStampWindowController::tr("{1} without {0} prints the page number, not the total.");
    if (total >= 0 && total < page)
        return TextStampWindowController::tr(
            "The first slot prints the page number, also when it reads {1}.");
    if (page >= 0 && slots == 2 && total < 0)
        return TextStampWindowController::tr("The second slot prints the total, also when it reads {0}.");
    return {};
}

} // namespace quillfern
