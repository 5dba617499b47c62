#pragma once

#include <QImage>
#include <QString>
#include <QWidget>

namespace quillfern {

/// Shows a picture in the middle, made smaller to fit where it is too large, never larger.
class PreviewImageView final : public QWidget
{
    Q_OBJECT

  public:
    explicit PreviewImageView(QWidget* parent = nullptr);

    void setImage(const QImage& image);
    [[nodiscard]] const QImage& image() const { return image_; }
    /// Whether to say that another picture is being made.
    void setIsWaiting(bool waiting);
    /// Shown over the picture: why it lacks something. Empty for none.
    void setProblem(const QString& problem);

  protected:
    void paintEvent(QPaintEvent* event) override;

  private:
    QImage image_; ///< in its device-independent size
    bool isWaiting_ = false;
    QString problem_;
};

/// Holds the preview: a box of a page's proportions, as large as fits, with the picture's view in it.
class PreviewArea final : public QWidget
{
    Q_OBJECT

  public:
    explicit PreviewArea(QWidget* parent = nullptr);

    QWidget* const previewBox;
    PreviewImageView* const previewImageView; ///< laid out by whoever follows frameChanged()

  Q_SIGNALS:
    /// The box has another size.
    void frameChanged();

  protected:
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
};

} // namespace quillfern
