#include "app/PreviewArea.h"

#include "config/PreviewModel.h"

#include <QEvent>
#include <QPainter>

namespace quillfern {

PreviewImageView::PreviewImageView(QWidget* parent) : QWidget(parent)
{
    setAccessibleName(tr("Preview"));
    setAccessibleDescription(tr("What a page will look like with its stamps"));
}

void PreviewImageView::setImage(const QImage& image)
{
    image_ = image;
    update();
}

void PreviewImageView::setIsWaiting(bool waiting)
{
    if (isWaiting_ == waiting) return;
    isWaiting_ = waiting;
    update();
}

void PreviewImageView::setProblem(const QString& problem)
{
    if (problem_ == problem) return;
    problem_ = problem;
    setAccessibleDescription(problem.isEmpty() ? tr("What a page will look like with its stamps") : problem);
    update();
}

void PreviewImageView::paintEvent(QPaintEvent*)
{
    if (image_.isNull()) return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    QSizeF size = image_.deviceIndependentSize();
    if (size.width() > width() || size.height() > height())
        size.scale(QSizeF(this->size()), Qt::KeepAspectRatio);
    QRectF place(QPointF(0, 0), size);
    place.moveCenter(QRectF(rect()).center());
    // On whole device pixels: otherwise a line of one pixel is spread over two.
    const double density = devicePixelRatioF();
    place.moveTopLeft(QPointF(std::round(place.x() * density), std::round(place.y() * density)) / density);
    painter.fillRect(place, Qt::white); // the shaded margins are translucent: a page is white in any palette
    painter.drawImage(place, image_);
    painter.setPen(QPen(palette().color(QPalette::Mid), 0));
    painter.drawRect(place.adjusted(0, 0, -1 / density, -1 / density));
    const QString text = isWaiting_ ? tr("Loading the page…") : problem_;
    if (text.isEmpty()) return;
    const QRect room = rect().adjusted(24, 12, -24, -12);
    QRectF plate = painter.fontMetrics()
                       .boundingRect(room, Qt::AlignCenter | Qt::TextWordWrap, text)
                       .adjusted(-12, -6, 12, 6);
    plate.moveCenter(place.center());
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(palette().window());
    painter.drawRoundedRect(plate, 6, 6);
    painter.setPen(palette().color(QPalette::WindowText));
    painter.drawText(plate, Qt::AlignCenter | Qt::TextWordWrap, text);
}

PreviewArea::PreviewArea(QWidget* parent)
    : QWidget(parent), previewBox(new QWidget(this)), previewImageView(new PreviewImageView(previewBox))
{
    previewBox->setObjectName(QStringLiteral("previewBox"));
    previewImageView->setObjectName(QStringLiteral("previewImageView"));
    previewBox->setGeometry(
        {}); // empty until the first layout, so that no animation starts from a wrong size
    previewImageView->setGeometry({});
    previewBox->installEventFilter(this);
}

void PreviewArea::resizeEvent(QResizeEvent* event)
{
    QWidget::resizeEvent(event);
    const int boxHeight = std::min(height(), static_cast<int>(tallestPreviewBox(width())));
    previewBox->setGeometry(0, (height() - boxHeight) / 2, width(), boxHeight);
}

bool PreviewArea::eventFilter(QObject* watched, QEvent* event)
{
    if (watched == previewBox && event->type() == QEvent::Resize) Q_EMIT frameChanged();
    return QWidget::eventFilter(watched, event);
}

} // namespace quillfern
