#pragma once

#include "config/Numbering.h"
#include "dialogs/AnchorGrid.h"
#include "dialogs/StampHost.h"
#include "stamps/IStampItem.h"

#include <QCheckBox>
#include <QDialog>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QString>
#include <memory>
#include <optional>

namespace quillfern {

/// What the editors of both kinds of stamps share: a window that writes every edit straight into its stamp
/// and notifies the configuration, adds the stamp to the list, and removes it. The window does not keep its
/// stamp alive: once the stamp is gone, or after invalidate(), every control is without effect. Main thread.
class StampEditorWindow : public QDialog
{
    Q_OBJECT

  public:
    ~StampEditorWindow() override;

    /// Shows the stamp as it is now, and brings the window to the front.
    void showAndReset();
    /// Shows the stamp as it is now. A field that is being typed in keeps its caret.
    void refresh();
    /// Offers to add a stamp that is not in the list, and to delete one that is.
    void reset();
    /// Closes the window, which does not touch the stamp from now on.
    void invalidate();
    [[nodiscard]] bool edits(const IStampItem& edited) const { return stamp() == &edited; }
    /// Whether there is a stamp to edit: it exists and invalidate() was not called.
    [[nodiscard]] bool hasStamp() const { return stamp() != nullptr; }
    /// While editing is disabled the window shows why and changes nothing.
    void setEditingEnabled(bool enabled);

    void addStampAction();
    /// The stamp, and with it this editor, may be gone afterwards.
    void deleteStampAction();
    void marginAnchorChanged(MarginAnchor anchor);
    /// Shows the stamp's anchor.
    void setMarginAnchor();

  protected:
    /// `isLabelASetting`: whether the preview is redrawn when the label changes, as well as the lists.
    StampEditorWindow(const std::shared_ptr<IStampItem>& stamp, Numbering& number, StampHost& host,
                      bool isLabelASetting, QWidget* parent);

    /// The controls of that name in a window's layout.
    struct SharedControls
    {
        QWidget* pane; ///< everything that edits
        QLineEdit* label;
        QCheckBox* enabled;
        AnchorGrid* anchors;
        QCheckBox* symmetry;
        QCheckBox* underContent;
        QWidget* notice; ///< says that editing is disabled
        QPushButton* add;
        QPushButton* remove;
        QPushButton* close;
    };
    template <class Layout>
    static SharedControls sharedControls(const Layout& ui)
    {
        return {ui.editorPane,       ui.labelTextField,       ui.enabledCheckbox, ui.anchorGrid,
                ui.symmetryCheckbox, ui.underContentCheckbox, ui.noticeLabel,     ui.addButton,
                ui.deleteButton,     ui.closeButton};
    }
    /// To be called once, after setupUi().
    void connectShared(const SharedControls& controls);

    /// Null after the stamp was deleted or invalidate() was called, and while editing is disabled.
    [[nodiscard]] IStampItem* editedStamp() const { return isEditingEnabled_ ? stamp() : nullptr; }
    /// Null after the stamp was deleted or invalidate() was called. Notifying others of an edit may lead to
    /// that.
    [[nodiscard]] IStampItem* stamp() const { return stamp_.lock().get(); }
    [[nodiscard]] Numbering& number() const { return number_; }
    [[nodiscard]] bool isEditingEnabled() const { return isEditingEnabled_; }

    /// To be called after every edit of something that the preview follows.
    void settingsChanged();
    /// To be called after any other edit.
    void stampRenamed();

    [[nodiscard]] virtual QString title() const = 0;
    /// Shows the fields that only this kind of stamp has. Only called while there is a stamp.
    virtual void showFields() = 0;
    /// Closes panels that belong to this window: the window closes, or editing is disabled.
    virtual void closePanels() {}
    virtual void editingEnabledChanged() {}

    void hideEvent(QHideEvent* event) override;
    bool event(QEvent* event) override;

  private:
    [[nodiscard]] bool isInList() const;
    void showTitle();
    [[nodiscard]] QString listed() const;
    void tellListsIfListed();

    std::weak_ptr<IStampItem> stamp_;
    Numbering& number_;
    StampHost& host_;
    bool isLabelASetting_;
    bool isEditingEnabled_ = true;
    SharedControls controls_ = {};
    QString listed_;            ///< the stamp's facts that lists were last notified of
    QPointer<QWidget> focused_; ///< where typing goes on when editing is enabled again
};

/// Gives the labels of all forms below `column` the width of the widest, so that the fields line up.
void alignForms(const QWidget& column);

/// Sets a field's text unless it is there already, which would move the caret.
void showText(QLineEdit& field, const std::optional<QString>& text);

} // namespace quillfern
