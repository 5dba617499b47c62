#include "dialogs/PictureView.h"

#include "dialogs/DropAsCopy.h"

#include <QDragEnterEvent>
#include <QMimeData>
#include <QPainter>
#include <algorithm>

namespace quillfern {

namespace {

constexpr int framePoints = 10; ///< around the picture
constexpr int squarePoints = 8; ///< of the checkerboard

QColor mixed(const QColor& a, const QColor& b, double share)
{
    const auto mix = [share](int x, int y) { return static_cast<int>(x + (y - x) * share); };
    return QColor(mix(a.red(), b.red()), mix(a.green(), b.green()), mix(a.blue(), b.blue()));
}

} // namespace

PictureView::PictureView(QWidget* parent) : QWidget(parent), bar_(this)
{
    setAcceptDrops(true);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    bar_.setRange(0, 0); // moves without an end
    bar_.setTextVisible(false);
    bar_.setAccessibleName(tr("Reading the picture"));
    bar_.setVisible(false);
}

void PictureView::showPicture(const std::optional<drawing::Picture>& picture)
{
    picture_ = picture;
    shown_ = QImage();
    update();
}

void PictureView::setHint(const QString& hint)
{
    hint_ = hint;
    update();
}

void PictureView::setBusy(bool busy)
{
    bar_.setVisible(busy);
    update();
}

QSize PictureView::sizeHint() const
{
    return {280, 240};
}

QSize PictureView::minimumSizeHint() const
{
    return {160, 120};
}

void PictureView::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor edge = isDropping_ ? palette().color(QPalette::Highlight) : palette().color(QPalette::WindowText);
    if (!isDropping_) edge.setAlphaF(0.35F);
    QPen pen(edge, isDropping_ ? 2 : 1);
    if (!picture_ && !isDropping_) pen.setStyle(Qt::DashLine);
    painter.setPen(pen);
    painter.setBrush(palette().color(QPalette::Base));
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), 5, 5);

    if (picture_) {
        paintPicture(painter);
    } else {
        painter.setPen(palette().color(QPalette::PlaceholderText));
        painter.drawText(rect().adjusted(16, 16, -16, -16), Qt::AlignCenter | Qt::TextWordWrap, hint_);
    }
}

void PictureView::paintPicture(QPainter& painter)
{
    const QSize room = size() - QSize(2 * framePoints, 2 * framePoints);
    const QSize whole = picture_->image().size();
    QSize fitting = whole;
    if (whole.width() > room.width() || whole.height() > room.height())
        fitting = whole.scaled(room, Qt::KeepAspectRatio);
    fitting = fitting.expandedTo(QSize(1, 1));
    const QSize pixels = fitting * devicePixelRatioF();
    if (shown_.size() != pixels)
        shown_ = picture_->imageFor(pixels).scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    QRect place(QPoint(0, 0), fitting);
    place.moveCenter(rect().center());

    if (picture_->image().hasAlphaChannel()) {
        // Paper is white in any palette, and so dark pictures are seen in a dark window, too.
        const QColor light = mixed(Qt::white, Qt::gray, 0.15);
        const QColor dark = mixed(Qt::white, Qt::gray, 0.55);
        painter.save();
        painter.setRenderHint(QPainter::Antialiasing, false);
        painter.setClipRect(place);
        painter.fillRect(place, light);
        for (int y = 0; y * squarePoints < place.height(); ++y)
            for (int x = y % 2; x * squarePoints < place.width(); x += 2)
                painter.fillRect(place.x() + x * squarePoints, place.y() + y * squarePoints, squarePoints,
                                 squarePoints, dark);
        painter.restore();
    }
    if (!isEnabled()) painter.setOpacity(0.45);
    painter.drawImage(place, shown_);
    painter.setOpacity(1);
}

void PictureView::resizeEvent(QResizeEvent* event)
{
    const int barHeight = 6;
    bar_.setGeometry(framePoints, height() - barHeight - 4, width() - 2 * framePoints, barHeight);
    QWidget::resizeEvent(event);
}

void PictureView::dragEnterEvent(QDragEnterEvent* event)
{
    if (!fileOf(*event).isEmpty() && acceptAsCopy(*event)) setDropping(true);
}

void PictureView::dragLeaveEvent(QDragLeaveEvent*)
{
    setDropping(false);
}

void PictureView::dropEvent(QDropEvent* event)
{
    setDropping(false);
    const FilePath path = fileOf(*event);
    if (!path.isEmpty() && acceptAsCopy(*event)) Q_EMIT fileDropped(path);
}

/// The one file that is dropped; empty when it is not exactly one of the right kind.
FilePath PictureView::fileOf(const QDropEvent& event) const
{
    const QList<QUrl> urls = event.mimeData()->urls();
    if (urls.size() != 1) return {};
    FilePath path = FilePath::fromUrl(urls.front());
    return types_.contains(path.extension()) ? path : FilePath();
}

void PictureView::setDropping(bool dropping)
{
    isDropping_ = dropping;
    update();
}

} // namespace quillfern
