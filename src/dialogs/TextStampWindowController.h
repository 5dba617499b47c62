#pragma once

#include "config/Numbering.h"
#include "dialogs/ColorPanel.h"
#include "dialogs/StampEditorWindow.h"
#include "dialogs/StampHost.h"
#include "stamps/TextStamp.h"

#include <QColor>
#include <QPointer>
#include <QString>
#include <QStringList>
#include <QWidget>
#include <functional>
#include <memory>

namespace quillfern {

namespace Ui {
class TextStampWindow;
}

class ColorButton;

/// The editor of a text stamp; see StampEditorWindow.
class TextStampWindowController final : public StampEditorWindow
{
    Q_OBJECT

  public:
    /// `colors` is shared by all editors and may go before this window does.
    TextStampWindowController(const std::shared_ptr<TextStamp>& stamp, Numbering& number, StampHost& host,
                              ColorPanel& colors, QWidget* parent);
    ~TextStampWindowController() override;

    /// Takes over the family in a row of the fonts menu; size and colour stay.
    void fontChanged(int row);
    /// Bold and italic are offered where the family has such a member. The stamp's own flags stay.
    void updateFontTraitsStatus();
    void textColorAction();
    void outlineColorAction();
    void textColorChanged(const QColor& color);
    void outlineColorChanged(const QColor& color);

  protected:
    [[nodiscard]] QString title() const override;
    void showFields() override;
    void closePanels() override;

  private:
    [[nodiscard]] TextStamp* text() const { return static_cast<TextStamp*>(stamp()); }
    void change(const std::function<void(TextStamp&)>& edit);
    void connectTextControls();
    void connectFontControls();
    void insertSlot(const QString& slot);
    void showSample();
    void pickColor(const QString& title, const QColor& color,
                   void (TextStampWindowController::*picked)(const QColor&));

    std::unique_ptr<Ui::TextStampWindow> ui_;
    QPointer<ColorPanel> colors_;
};

/// Whether a family has a bold and an italic member, according to the names of its members' styles.
struct FontTraits
{
    bool bold = false;
    bool italic = false;
};
[[nodiscard]] FontTraits traitsOf(const QStringList& styles);

/// A hint for a template that prints something else than it seems to; empty for any other template.
[[nodiscard]] QString templateAdvice(const QString& pattern);

} // namespace quillfern
