#include "dialogs/StampEditorWindow.h"

#include <QFormLayout>
#include <QHideEvent>
#include <QLabel>
#include <QShortcut>
#include <algorithm>

namespace quillfern {

StampEditorWindow::StampEditorWindow(const std::shared_ptr<IStampItem>& stamp, Numbering& number,
                                     StampHost& host, bool isLabelASetting, QWidget* parent)
    : QDialog(parent), stamp_(stamp), number_(number), host_(host), isLabelASetting_(isLabelASetting)
{
    setAttribute(Qt::WA_QuitOnClose, false);
}

StampEditorWindow::~StampEditorWindow() = default;

void StampEditorWindow::connectShared(const SharedControls& controls)
{
    controls_ = controls;
    controls.notice->setVisible(false);
    connect(controls.label, &QLineEdit::textEdited, this, [this](const QString& text) {
        if (!editedStamp()) return;
        stamp()->setLabel(text);
        isLabelASetting_ ? settingsChanged() : stampRenamed();
    });
    connect(controls.enabled, &QCheckBox::clicked, this, [this](bool on) {
        if (!editedStamp()) return;
        stamp()->setIsSelected(on);
        settingsChanged();
    });
    connect(controls.symmetry, &QCheckBox::clicked, this, [this](bool on) {
        if (!editedStamp()) return;
        stamp()->setIsSymmetry(on);
        stampRenamed();
    });
    connect(controls.underContent, &QCheckBox::clicked, this, [this](bool on) {
        if (!editedStamp()) return;
        stamp()->setIsDrawUnderPDFContent(on);
        stampRenamed();
    });
    connect(controls.anchors, &AnchorGrid::anchorChosen, this, &StampEditorWindow::marginAnchorChanged);
    connect(controls.add, &QPushButton::clicked, this, &StampEditorWindow::addStampAction);
    connect(controls.remove, &QPushButton::clicked, this, &StampEditorWindow::deleteStampAction);
    connect(controls.close, &QPushButton::clicked, this, &StampEditorWindow::reject);
    connect(new QShortcut(QKeySequence::Close, this), &QShortcut::activated, this,
            &StampEditorWindow::reject);
    // Return ends editing in a field; it presses no button.
    for (QPushButton* button : findChildren<QPushButton*>())
        button->setAutoDefault(false);
}

void StampEditorWindow::showAndReset()
{
    refresh();
    reset();
    setWindowState(windowState() & ~Qt::WindowMinimized);
    show();
    raise();
    activateWindow();
}

void StampEditorWindow::refresh()
{
    if (!stamp()) return;
    listed_ = listed();
    showText(*controls_.label, stamp()->label());
    controls_.enabled->setChecked(stamp()->isSelected());
    controls_.symmetry->setChecked(stamp()->isSymmetry());
    controls_.underContent->setChecked(stamp()->isDrawUnderPDFContent());
    setMarginAnchor();
    showFields();
    showTitle();
}

void StampEditorWindow::reset()
{
    const bool isListed = stamp() && isInList();
    controls_.add->setEnabled(editedStamp() && !isListed);
    controls_.remove->setEnabled(editedStamp() && isListed);
}

void StampEditorWindow::invalidate()
{
    stamp_.reset(); // first: closing the window ends half-done edits, which must not reach the stamp
    hide();
}

void StampEditorWindow::setEditingEnabled(bool enabled)
{
    if (enabled == isEditingEnabled_) return;
    if (!enabled) {
        focused_ = focusWidget();
        closePanels();
    }
    isEditingEnabled_ = enabled;
    controls_.pane->setEnabled(enabled);
    controls_.notice->setVisible(!enabled);
    reset();
    if (enabled && focused_) focused_->setFocus();
    editingEnabledChanged();
}

void StampEditorWindow::addStampAction()
{
    if (!editedStamp() || isInList()) return;
    host_.addStamp(*stamp());
    hide();
}

void StampEditorWindow::deleteStampAction()
{
    if (!editedStamp()) return;
    const std::shared_ptr<IStampItem> doomed = stamp_.lock(); // lives until the list's owner is done with it
    hide();
    if (isInList()) host_.removeStamp(*doomed);
}

void StampEditorWindow::marginAnchorChanged(MarginAnchor anchor)
{
    if (!editedStamp()) return;
    stamp()->setMarginAnchor(anchor);
    setMarginAnchor();
    settingsChanged();
}

void StampEditorWindow::setMarginAnchor()
{
    if (stamp()) controls_.anchors->showAnchor(stamp()->marginAnchor());
}

void StampEditorWindow::settingsChanged()
{
    showTitle();
    tellListsIfListed();
    number_.endUpdate(true);
}

void StampEditorWindow::stampRenamed()
{
    showTitle();
    listed_ = listed();
    host_.stampRenamed(*stamp());
}

void StampEditorWindow::hideEvent(QHideEvent* event)
{
    if (!event->spontaneous()) closePanels();
    QDialog::hideEvent(event);
}

bool StampEditorWindow::event(QEvent* event)
{
    // The list may have changed the stamp while another window was in front.
    if (event->type() == QEvent::WindowActivate && isVisible()) {
        refresh();
        reset();
    }
    return QDialog::event(event);
}

bool StampEditorWindow::isInList() const
{
    return std::any_of(number_.stamps.begin(), number_.stamps.end(),
                       [this](const auto& each) { return each.get() == stamp(); });
}

void StampEditorWindow::showTitle()
{
    // Qt replaces "[*]" in a title by its mark for unsaved changes, unless it is doubled.
    setWindowTitle(title().replace(QLatin1String("[*]"), QLatin1String("[*][*]")));
}

QString StampEditorWindow::listed() const
{
    return QStringLiteral("%1\n%2\n%3")
        .arg(stamp()->isSelected())
        .arg(stamp()->label().value_or(QString()), stamp()->description());
}

/// Lists are notified only of edits that change what they show.
void StampEditorWindow::tellListsIfListed()
{
    const QString now = listed();
    if (now == listed_) return;
    listed_ = now;
    host_.stampRenamed(*stamp());
}

void alignForms(const QWidget& column)
{
    int widest = 0;
    QList<QLabel*> labels;
    for (const QFormLayout* form : column.findChildren<QFormLayout*>()) {
        for (int row = 0; row < form->rowCount(); ++row) {
            const QLayoutItem* item = form->itemAt(row, QFormLayout::LabelRole);
            auto* label = item ? qobject_cast<QLabel*>(item->widget()) : nullptr;
            if (!label) continue;
            labels.append(label);
            widest = std::max(widest, label->sizeHint().width());
        }
    }
    for (QLabel* label : labels)
        label->setMinimumWidth(widest);
}

void showText(QLineEdit& field, const std::optional<QString>& text)
{
    const QString shown = text.value_or(QString());
    if (field.text() != shown) field.setText(shown);
}

} // namespace quillfern
