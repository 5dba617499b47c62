#include "dialogs/ThemedIcon.h"

#include <QFile>
#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QPalette>
#include <QPixmapCache>
#include <QSvgRenderer>

// The linker drops the pictures from a static library unless they are registered by name. The macro has to be
// used outside any namespace.
static void registerIcons()
{
    Q_INIT_RESOURCE(icons);
}

namespace quillfern {

namespace {

class ThemedIconEngine final : public QIconEngine
{
  public:
    explicit ThemedIconEngine(QString name) : name_(std::move(name)) {}

    [[nodiscard]] QIconEngine* clone() const override { return new ThemedIconEngine(name_); }
    [[nodiscard]] QString iconName() override { return name_; }
    [[nodiscard]] bool isNull() override { return !QFile::exists(path()); }

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override
    {
        QSvgRenderer renderer(colored(mode));
        renderer.setAspectRatioMode(Qt::KeepAspectRatio);
        renderer.render(painter, rect);
    }

    /// `size` is in device pixels.
    [[nodiscard]] QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        const QString key = QStringLiteral("quillfern:%1:%2:%3x%4")
                                .arg(name_, color(mode).name(QColor::HexArgb))
                                .arg(size.width())
                                .arg(size.height());
        QPixmap picture;
        if (QPixmapCache::find(key, &picture)) return picture;
        picture = QPixmap(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        paint(&painter, QRect(QPoint(0, 0), size), mode, state);
        painter.end();
        QPixmapCache::insert(key, picture);
        return picture;
    }

  private:
    [[nodiscard]] QString path() const { return QStringLiteral(":/icons/%1.svg").arg(name_); }

    [[nodiscard]] static QColor color(QIcon::Mode mode)
    {
        const QPalette palette = QGuiApplication::palette();
        if (mode == QIcon::Disabled) return palette.color(QPalette::Disabled, QPalette::ButtonText);
        if (mode == QIcon::Selected) return palette.color(QPalette::Active, QPalette::HighlightedText);
        return palette.color(QPalette::Active, QPalette::ButtonText);
    }

    [[nodiscard]] QByteArray colored(QIcon::Mode mode) const
    {
        QFile file(path());
        if (!file.open(QIODevice::ReadOnly)) return {};
        return file.readAll().replace("currentColor", color(mode).name().toUtf8());
    }

    QString name_;
};

} // namespace

QIcon themedIcon(const QString& name)
{
    registerIcons();                          // repeated calls have no effect
    return QIcon(new ThemedIconEngine(name)); // the icon owns its engine
}

} // namespace quillfern
