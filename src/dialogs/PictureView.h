#pragma once

#include "platform/drawing/Picture.h"
#include "platform/system/FilePath.h"

#include <QImage>
#include <QProgressBar>
#include <QString>
#include <QStringList>
#include <QWidget>
#include <optional>

class QPainter;

namespace quillfern {

/// Shows a stamp's picture, made smaller to fit, on a checkerboard where it is transparent, and takes a
/// picture file that is dropped on it.
class PictureView final : public QWidget
{
    Q_OBJECT

  public:
    explicit PictureView(QWidget* parent = nullptr);

    /// The extensions of the files that may be dropped, compared with case.
    void setTypes(const QStringList& types) { types_ = types; }
    void showPicture(const std::optional<drawing::Picture>& picture);
    [[nodiscard]] const std::optional<drawing::Picture>& picture() const { return picture_; }
    /// The text that is shown when there is no picture.
    void setHint(const QString& hint);
    /// While a file is read a bar moves; the present picture stays visible.
    void setBusy(bool busy);

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

  Q_SIGNALS:
    void fileDropped(const FilePath& path);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void dragEnterEvent(QDragEnterEvent* event) override;
    void dragLeaveEvent(QDragLeaveEvent* event) override;
    void dropEvent(QDropEvent* event) override;

  private:
    [[nodiscard]] FilePath fileOf(const QDropEvent& event) const;
    void paintPicture(QPainter& painter);
    void setDropping(bool dropping);

    QStringList types_;
    std::optional<drawing::Picture> picture_;
    QImage shown_; ///< the picture at the size it is shown; null until painted
    QString hint_;
    QProgressBar bar_;
    bool isDropping_ = false; ///< a file that would be taken is held over the view
};

} // namespace quillfern
