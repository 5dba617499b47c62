#include "app/WindowLooks.h"

#include "dialogs/ElidedLabel.h"
#include "dialogs/FontMenu.h"
#include "support/Cases.h"

#include <QAbstractButton>
#include <QAbstractScrollArea>
#include <QAbstractSpinBox>
#include <QComboBox>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPlainTextEdit>
#include <QStyleOptionComboBox>
#include <QTabBar>
#include <QTableView>
#include <QTest>
#include <algorithm>

namespace quillfern {

namespace {

QStringList textsOf(const QAbstractItemModel& model)
{
    QStringList texts;
    const int roles[] = {Qt::DisplayRole, Qt::ToolTipRole, Qt::AccessibleTextRole,
                         Qt::AccessibleDescriptionRole};
    for (const int role : roles)
        for (int column = 0; column < model.columnCount(); ++column) {
            texts.append(model.headerData(column, Qt::Horizontal, role).toString());
            for (int row = 0; row < model.rowCount(); ++row)
                texts.append(model.index(row, column).data(role).toString());
        }
    return texts;
}

QRect inWindow(const QWidget& widget)
{
    return {widget.mapTo(widget.window(), QPoint(0, 0)), widget.size()};
}

/// The smallest size a layout may give the widget.
QSize leastSize(const QWidget& widget)
{
    QSize least = widget.minimumSizeHint();
    if (widget.sizePolicy().horizontalPolicy() == QSizePolicy::Ignored) least.setWidth(0);
    if (widget.sizePolicy().verticalPolicy() == QSizePolicy::Ignored) least.setHeight(0);
    if (widget.minimumWidth() > 0) least.setWidth(widget.minimumWidth());
    if (widget.minimumHeight() > 0) least.setHeight(widget.minimumHeight());
    return least.boundedTo(widget.maximumSize());
}

bool isTextCut(const QWidget& widget)
{
    if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
        if (label->text().isEmpty() || qobject_cast<const ElidedLabel*>(label)) return false;
        return label->wordWrap() ? label->heightForWidth(label->width()) > label->height()
                                 : label->sizeHint().width() > label->width();
    }
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget))
        return !button->text().isEmpty() && (button->sizeHint().width() > button->width() ||
                                             button->sizeHint().height() > button->height());
    if (const auto* field = qobject_cast<const QLineEdit*>(&widget))
        return field->fontMetrics().horizontalAdvance(field->placeholderText()) > field->width() - 8;
    if (const auto* tabs = qobject_cast<const QTabBar*>(&widget)) {
        for (int i = 0; i < tabs->count(); ++i)
            if (!tabs->rect().contains(tabs->tabRect(i)) ||
                tabs->fontMetrics().horizontalAdvance(tabs->tabText(i)) > tabs->tabRect(i).width() - 8)
                return true;
        return false;
    }
    if (const auto* menu = qobject_cast<const QComboBox*>(&widget); menu && !menu->isEditable()) {
        QStyleOptionComboBox option;
        option.initFrom(menu);
        const int room =
            menu->style()
                ->subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxEditField, menu)
                .width();
        for (int i = 0; i < menu->count(); ++i)
            if (menu->fontMetrics().horizontalAdvance(menu->itemText(i)) > room) return true;
    }
    return false;
}

/// Whether the widget is an inner part of a list, spin box or combo box, which Qt arranges.
bool isPartOfControl(const QWidget& widget)
{
    for (const QWidget* above = widget.parentWidget(); above; above = above->parentWidget())
        if (qobject_cast<const QAbstractScrollArea*>(above) || qobject_cast<const QAbstractSpinBox*>(above) ||
            qobject_cast<const QComboBox*>(above))
            return true;
    return false;
}

} // namespace

std::string nameOf(const QWidget& widget)
{
    const auto* button = qobject_cast<const QAbstractButton*>(&widget);
    return std::string(widget.metaObject()->className()) + " " + widget.objectName().toStdString() +
           (button ? " " + button->text().toStdString() : "");
}

std::vector<QWidget*> visibleWidgets(QWidget& window)
{
    std::vector<QWidget*> seen{&window};
    for (QWidget* each : window.findChildren<QWidget*>())
        if (each->isVisible() && each->window() == &window) seen.push_back(each);
    return seen;
}

QStringList textsOf(const QWidget& widget)
{
    QStringList texts = {widget.toolTip(), widget.statusTip(), widget.whatsThis(), widget.accessibleName(),
                         widget.accessibleDescription()};
    if (widget.isWindow()) texts.append(widget.windowTitle());
    if (const auto* label = qobject_cast<const QLabel*>(&widget)) texts.append(label->text());
    if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) texts.append(button->text());
    if (const auto* box = qobject_cast<const QGroupBox*>(&widget)) texts.append(box->title());
    if (const auto* field = qobject_cast<const QLineEdit*>(&widget)) texts.append(field->placeholderText());
    if (const auto* area = qobject_cast<const QPlainTextEdit*>(&widget))
        texts.append(area->placeholderText());
    if (const auto* table = qobject_cast<const QTableView*>(&widget); table && table->model())
        texts.append(textsOf(*table->model()));
    if (const auto* tabs = qobject_cast<const QTabBar*>(&widget))
        for (int i = 0; i < tabs->count(); ++i)
            texts.append({tabs->tabText(i), tabs->tabToolTip(i)});
    if (const auto* menu = qobject_cast<const QComboBox*>(&widget);
        menu && !qobject_cast<const FontMenu*>(menu))
        for (int i = 0; i < menu->count(); ++i)
            texts.append(menu->itemText(i));
    return texts;
}

std::vector<QWidget*> tabStops(QWidget& window)
{
    std::vector<QWidget*> stops;
    for (QWidget* each : visibleWidgets(window))
        if (each != &window && each->isEnabled() && !each->focusProxy() &&
            (each->focusPolicy() & Qt::TabFocus))
            stops.push_back(each);
    return stops;
}

std::vector<QWidget*> tabRound(QWidget& window)
{
    std::vector<QWidget*> round;
    for (int i = 0; i < 200; ++i) {
        QTest::keyClick(window.focusWidget() ? window.focusWidget() : &window, Qt::Key_Tab);
        QWidget* now = window.focusWidget();
        if (!now || (!round.empty() && now == round.front())) break;
        round.push_back(now);
    }
    // The focus chain is a circle; a reader begins at its first control in the order of the window's own
    // chain.
    for (QWidget* each = window.nextInFocusChain(); each != &window; each = each->nextInFocusChain())
        if (const auto first = std::find(round.begin(), round.end(), each); first != round.end()) {
            std::rotate(round.begin(), first, round.end());
            break;
        }
    return round;
}

bool isAfter(const QWidget& one, const QWidget& other)
{
    QRect a = inWindow(other);
    QRect b = inWindow(one);
    const bool besides = a.top() <= b.bottom() && b.top() <= a.bottom();
    const bool isRightToLeft = other.window()->layoutDirection() == Qt::RightToLeft;
    if (besides) return isRightToLeft ? b.right() < a.left() || b.right() <= a.right() : b.left() >= a.left();
    const bool sharesColumn = a.left() <= b.right() && b.left() <= a.right();
    return b.top() > a.bottom() || !sharesColumn;
}

std::vector<std::string> cutOff(QWidget& window)
{
    std::vector<std::string> problems;
    const auto size = [](const QSize& s) {
        return std::to_string(s.width()) + "x" + std::to_string(s.height());
    };
    for (const QWidget* each : visibleWidgets(window)) {
        if (isPartOfControl(*each)) continue;
        const QSize least = leastSize(*each);
        if (each->width() < least.width() || each->height() < least.height())
            problems.push_back(nameOf(*each) + " has " + size(each->size()) + " and needs " + size(least));
        if (isTextCut(*each))
            problems.push_back(nameOf(*each) + " cuts its text off, at " + size(each->size()));
        if (each->objectName() == "qt_toolbar_ext_button"_L1)
            problems.push_back("the toolbar has no room for all its items");
        // In a layout from right to left, QSplitter places its parts one pixel off.
        if (each != &window &&
            !each->parentWidget()->rect().adjusted(-1, -1, 1, 1).contains(each->geometry()))
            problems.push_back(nameOf(*each) + " is not all inside of " + nameOf(*each->parentWidget()));
    }
    return problems;
}

} // namespace quillfern
