#include "dialogs/FontMenu.h"

#include <QAbstractItemView>
#include <QCompleter>
#include <QFontDatabase>
#include <QLineEdit>
#include <QListView>
#include <QPainter>
#include <QSignalBlocker>
#include <QStyledItemDelegate>

namespace quillfern {

namespace {

constexpr double faceScale = 1.25; ///< of the interface's font
constexpr double rowScale = 2.2;   ///< of its height; leaves room for tall faces

/// Writes each family's name in its face. Only a row that is painted loads its face.
class FontNameDelegate final : public QStyledItemDelegate
{
  public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override
    {
        if (isSeparator(index)) return {1, option.fontMetrics.height() / 2};
        return {20 * option.fontMetrics.averageCharWidth(),
                static_cast<int>(option.fontMetrics.height() * rowScale / faceScale)};
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& given, const QModelIndex& index) const override
    {
        if (isSeparator(index)) {
            painter->setPen(given.palette.color(QPalette::Mid));
            painter->drawLine(given.rect.left() + 4, given.rect.center().y(), given.rect.right() - 4,
                              given.rect.center().y());
            return;
        }
        QStyleOptionViewItem option = given;
        const QString family = index.data().toString();
        QFont face(family);
        face.setPointSizeF(given.font.pointSizeF() * faceScale);
        // A face with pictures in place of letters cannot show its own name.
        const auto systems = QFontDatabase::writingSystems(family);
        const bool isSymbols =
            systems.contains(QFontDatabase::Symbol) && !systems.contains(QFontDatabase::Latin);
        if (!isSymbols) option.font = face;
        QStyledItemDelegate::paint(painter, option, index);
        if (!isSymbols) return;
        painter->save();
        painter->setFont(face);
        painter->setPen(given.palette.color(given.state & QStyle::State_Selected ? QPalette::HighlightedText
                                                                                 : QPalette::Text));
        painter->drawText(given.rect.adjusted(6, 0, -6, 0), Qt::AlignTrailing | Qt::AlignVCenter,
                          QFontDatabase::writingSystemSample(QFontDatabase::Symbol));
        painter->restore();
    }

  private:
    static bool isSeparator(const QModelIndex& index)
    {
        return index.data(Qt::AccessibleDescriptionRole).toString() == QLatin1String("separator");
    }
};

/// Rows of one height are laid out without asking each for its size.
void useFaces(QAbstractItemView* view)
{
    view->setItemDelegate(new FontNameDelegate(view));
    if (auto* list = qobject_cast<QListView*>(view)) list->setUniformItemSizes(true);
}

} // namespace

FontMenu::FontMenu(QWidget* parent) : QComboBox(parent)
{
    setEditable(true);
    setInsertPolicy(NoInsert);
    setMaxVisibleItems(14);
    setSizeAdjustPolicy(AdjustToMinimumContentsLengthWithIcon);
    setMinimumContentsLength(16);

    auto* finder = new QCompleter(model(), this);
    finder->setCompletionMode(QCompleter::PopupCompletion);
    finder->setFilterMode(Qt::MatchContains);
    finder->setCaseSensitivity(Qt::CaseInsensitive);
    finder->setMaxVisibleItems(10);
    setCompleter(finder);
    setItemDelegate(new FontNameDelegate(this));
    if (auto* list = qobject_cast<QListView*>(view())) list->setUniformItemSizes(true);
    useFaces(finder->popup());

    connect(this, &QComboBox::activated, this, &FontMenu::choose);
    connect(lineEdit(), &QLineEdit::returnPressed, this, &FontMenu::takeNearest);
    connect(lineEdit(), &QLineEdit::editingFinished, this, &FontMenu::restore);
}

void FontMenu::setFonts(const std::vector<PDFFont>& fonts)
{
    const QSignalBlocker quiet(this);
    clear();
    for (const PDFFont& font : fonts) {
        const QString name = font.fontName.value_or(QString());
        if (name == QLatin1String("-"))
            insertSeparator(count());
        else
            addItem(name);
    }
    select(family_);
}

void FontMenu::showFamily(const QString& family)
{
    if (family != family_) select(family); // the user may be typing a name otherwise
}

void FontMenu::select(const QString& family)
{
    const QSignalBlocker quiet(this);
    family_ = family;
    setCurrentIndex(findText(family, Qt::MatchExactly | Qt::MatchCaseSensitive));
    restore();
}

void FontMenu::hideEvent(QHideEvent* event)
{
    restore();
    QComboBox::hideEvent(event);
}

void FontMenu::choose(int row)
{
    if (row < 0 || itemText(row).isEmpty() || itemText(row) == family_) return;
    family_ = itemText(row);
    Q_EMIT familyChosen(row);
}

/// What was typed becomes the first family that begins with it, or that contains it.
void FontMenu::takeNearest()
{
    const QString typed = currentText().trimmed();
    if (typed.isEmpty() || typed == family_) return;
    int row = findText(typed, Qt::MatchFixedString);
    if (row < 0) row = findText(typed, Qt::MatchStartsWith);
    if (row < 0) row = findText(typed, Qt::MatchContains);
    if (row < 0) return;
    setCurrentIndex(row);
    choose(row);
}

/// A half-typed name is replaced by the chosen family's when editing ends.
void FontMenu::restore()
{
    if (currentText() != family_) setEditText(family_);
}

} // namespace quillfern
