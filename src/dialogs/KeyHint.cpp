#include "dialogs/KeyHint.h"

#include "platform/system/Guarded.h"

#include <QAbstractButton>
#include <QApplication>
#include <QEvent>
#include <QKeySequence>
#include <QPainter>
#include <QProxyStyle>
#include <QStyleFactory>
#include <QStyleOptionToolButton>
#include <QTextLayout>
#include <cmath>

namespace quillfern {

namespace {

struct Hint
{
    QString key;
    QColor color; ///< invalid for the palette's
    int occurrance = 1;

    [[nodiscard]] qsizetype positionIn(const QString& title) const
    {
        if (key.isEmpty()) return -1;
        if (occurrance == 1) return title.indexOf(key, 0, Qt::CaseInsensitive);
        return title.lastIndexOf(key, -1, Qt::CaseSensitive);
    }
};

/// A button's text as it is read: the marks of the toolkit's own mnemonics left out.
QString titleOf(const QString& text)
{
    QString title;
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text.at(i) == u'&' && ++i == text.size()) break;
        title += text.at(i);
    }
    return title;
}

/// Draws the title of one button. A style, because that is where buttons of all kinds draw their text, with
/// everything else about them left to the application's style.
class KeyHintStyle final : public QProxyStyle
{
  public:
    KeyHintStyle(QAbstractButton& button, Hint hint)
        : QProxyStyle(QStyleFactory::create(applicationStyle())), button_(button), hint_(std::move(hint)),
          baseName_(applicationStyle())
    {
        setParent(&button);
        button.installEventFilter(this);
    }

    /// Gives the button a style for the hint in place of the one it may have had.
    static void install(QAbstractButton& button, const Hint& hint)
    {
        auto* const former = dynamic_cast<KeyHintStyle*>(button.style());
        auto* const style = new KeyHintStyle(button, hint);
        button.setStyle(style);
        if (former) former->retire();
        style->takeUpText();
    }

    void drawItemText(QPainter* painter, const QRect& rect, int flags, const QPalette& palette, bool enabled,
                      const QString& text, QPalette::ColorRole role) const override
    {
        QString shown = titleOf(text);
        const QString title = titleOf(button_.text());
        const qsizetype position = hint_.positionIn(title);
        // A title cut short for want of room may have lost the letter.
        if (position < 0 || !shown.startsWith(title.left(position + hint_.key.size()))) {
            QProxyStyle::drawItemText(painter, rect, flags, palette, enabled, text, role);
            return;
        }
        QTextCharFormat format;
        format.setFontWeight(QFont::Bold);
        format.setFontUnderline(true);
        if (enabled && hint_.color.isValid()) format.setForeground(hint_.color);

        const Qt::LayoutDirection direction = painter->layoutDirection();
        const Qt::Alignment alignment = visualAlignment(direction, Qt::Alignment(QFlag(flags)));
        QTextOption option(alignment & Qt::AlignHorizontal_Mask);
        option.setTextDirection(direction);
        option.setWrapMode(QTextOption::NoWrap);
        QTextLayout layout(shown.replace(u'\n', QChar(QChar::LineSeparator)), painter->font(),
                           painter->device());
        layout.setTextOption(option);
        layout.setFormats({{static_cast<int>(position), static_cast<int>(hint_.key.size()), format}});
        qreal height = 0;
        layout.beginLayout();
        for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
            line.setLineWidth(rect.width());
            line.setPosition(QPointF(0, height));
            height += line.height();
        }
        layout.endLayout();

        qreal top = 0;
        if (alignment & Qt::AlignVCenter) top = std::floor((rect.height() - height) / 2);
        if (alignment & Qt::AlignBottom) top = rect.height() - height;
        const QPen pen = painter->pen();
        if (role != QPalette::NoRole) painter->setPen(QPen(palette.brush(role), pen.widthF()));
        layout.draw(painter, QPointF(rect.left(), rect.top() + top));
        painter->setPen(pen);
    }

    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& size,
                           const QWidget* widget) const override
    {
        const auto* const tool = qstyleoption_cast<const QStyleOptionToolButton*>(option);
        const bool hasTitle = !tool || tool->toolButtonStyle != Qt::ToolButtonIconOnly;
        return QProxyStyle::sizeFromContents(type, option, hasTitle ? size + QSize(extraWidth(), 0) : size,
                                             widget);
    }

    QRect itemTextRect(const QFontMetrics& metrics, const QRect& rect, int flags, bool enabled,
                       const QString& text) const override
    {
        const QRect plain = QProxyStyle::itemTextRect(metrics, rect, flags, enabled, text);
        const bool toTheRight =
            visualAlignment(button_.layoutDirection(), Qt::Alignment(QFlag(flags))) & Qt::AlignRight;
        return toTheRight ? plain.adjusted(-extraWidth(), 0, 0, 0) : plain.adjusted(0, 0, extraWidth(), 0);
    }

    bool eventFilter(QObject* watched, QEvent* event) override
    {
        if (event->type() == QEvent::Paint && !isRetired_) {
            // There is no signal for a button's new text, and none for a new application style on a widget
            // with a style of its own. Both cause the button to be painted.
            takeUpText();
            if (applicationStyle() != baseName_)
                QMetaObject::invokeMethod(
                    this,
                    [this] {
                        if (!isRetired_) install(button_, hint_);
                    },
                    Qt::QueuedConnection);
        }
        return QProxyStyle::eventFilter(watched, event);
    }

  private:
    static QString applicationStyle() { return QApplication::style()->name(); }

    void retire()
    {
        isRetired_ = true;
        button_.removeEventFilter(this);
        deleteLater(); // this style may be replaced while it draws
    }

    /// A button that gets a new text loses its shortcut.
    void takeUpText()
    {
        if (text_ == button_.text()) return;
        text_ = button_.text();
        if (hint_.positionIn(titleOf(text_)) >= 0)
            button_.setShortcut(QKeySequence::mnemonic(u'&' + hint_.key));
    }

    /// How much wider the bold letter makes the title.
    [[nodiscard]] int extraWidth() const
    {
        const QString title = titleOf(button_.text());
        const qsizetype position = hint_.positionIn(title);
        if (position < 0) return 0;
        const QString letter = title.mid(position, hint_.key.size());
        QFont bold = button_.font();
        bold.setWeight(QFont::Bold);
        const qreal extra = QFontMetricsF(bold).horizontalAdvance(letter) -
                            QFontMetricsF(button_.font()).horizontalAdvance(letter);
        return std::max(0, static_cast<int>(std::ceil(extra)));
    }

    QAbstractButton& button_;
    Hint hint_;
    QString baseName_;
    QString text_;
    bool isRetired_ = false;
};

} // namespace

void setButtonKeyCharacter(QAbstractButton& button, const QString& keyChar, const QColor& color)
{
    setButtonKeyCharacter(button, keyChar, color, 1);
}

void setButtonKeyCharacter(QAbstractButton& button, const QString& keyChar, const QColor& color,
                           int occurrance)
{
    guarded("Error in (setButtonKeyCharacter:keyChar:color:) : %@", [&] {
        const Hint hint{keyChar, color, occurrance};
        if (hint.positionIn(titleOf(button.text())) >= 0) KeyHintStyle::install(button, hint);
    });
}

} // namespace quillfern
