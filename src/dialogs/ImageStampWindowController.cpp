#include "dialogs/ImageStampWindowController.h"

#include "dialogs/FieldFormatters.h"
#include "platform/system/LogLine.h"
#include "platform/system/NativePath.h"
#include "ui_ImageStampWindow.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace quillfern {

namespace {

/// Records keep sizes in 32 bits.
constexpr std::int64_t largestSide = std::numeric_limits<std::int32_t>::max();

const QStringList& pictureTypes()
{
    static const QStringList types = {QStringLiteral("bmp"), QStringLiteral("BMP"),  QStringLiteral("jpg"),
                                      QStringLiteral("JPG"), QStringLiteral("jpeg"), QStringLiteral("JPEG"),
                                      QStringLiteral("png"), QStringLiteral("PNG"),  QStringLiteral("gif"),
                                      QStringLiteral("GIF")};
    return types;
}

/// The side that goes with `side` in the proportions `other` to `own`, cut to whole points.
std::int64_t inProportion(std::int64_t side, int own, int other)
{
    const double length = std::trunc(static_cast<double>(side) * other / own);
    return static_cast<std::int64_t>(std::clamp(length, 0.0, static_cast<double>(largestSide)));
}

} // namespace

ImageStampWindowController::ImageStampWindowController(const std::shared_ptr<ImageStamp>& stamp,
                                                       Numbering& number, StampHost& host,
                                                       desktop::FilePanels& panels, desktop::Alerts& alerts,
                                                       QWidget* parent)
    : StampEditorWindow(stamp, number, host, false, parent), ui_(std::make_unique<Ui::ImageStampWindow>()),
      panels_(panels), alerts_(alerts)
{
    ui_->setupUi(this);
    alignForms(*ui_->rightColumn);
    connectShared(sharedControls(*ui_));
    connectControls();
    ui_->chooseButton->setFocus();

    // A size in the picture's proportions was chosen with the proportions locked.
    if (const auto& picture = stamp->cacheImage()) {
        const QSize whole = picture->image().size();
        setIsAspectRatio(
            stamp->stampImageHeight == inProportion(stamp->stampImageWidth, whole.width(), whole.height()) ||
            stamp->stampImageWidth == inProportion(stamp->stampImageHeight, whole.height(), whole.width()));
    }
}

ImageStampWindowController::~ImageStampWindowController() = default;

void ImageStampWindowController::connectControls()
{
    ui_->stampImageView->setTypes(pictureTypes());
    connect(ui_->stampImageView, &PictureView::fileDropped, this, &ImageStampWindowController::loadPicture);
    connect(ui_->chooseButton, &QPushButton::clicked, this, &ImageStampWindowController::changeImageAction);
    connect(ui_->removeImageButton, &QPushButton::clicked, this,
            &ImageStampWindowController::removeImageAction);

    connectSide(*ui_->stampImageWidthTextField, &ImageStamp::stampImageWidth, *ui_->stampImageHeightTextField,
                &ImageStamp::stampImageHeight);
    connectSide(*ui_->stampImageHeightTextField, &ImageStamp::stampImageHeight,
                *ui_->stampImageWidthTextField, &ImageStamp::stampImageWidth);

    ui_->imageOpacityField->setSubject(tr("Opacity"), QStringLiteral("imageOpacityLabel"));
    connect(ui_->imageOpacityField, &OpacityField::edited, this,
            [this](qint64 percent) { change([&](ImageStamp& s) { s.stampImageOpacity = percent; }); });
    connect(ui_->rotationField, &RotationField::edited, this, [this](double degrees) {
        change([&](ImageStamp& s) { s.stampImageRotation = static_cast<std::int64_t>(degrees); });
    });

    connect(&loader_, &PictureLoader::loaded, this, [this](const LoadedPicture& picture) {
        showPicture();
        if (!image()) return;
        const qint64 bytes = number().pictureBytesWith(*image(), picture.tiff.size());
        if (bytes > Numbering::mostPictureBytes)
            refuse(bytes);
        else if (isEditingEnabled())
            take(picture);
        else
            waiting_ = picture;
    });
    connect(&loader_, &PictureLoader::failed, this, [this](const QString& reason) {
        logLine(QStringLiteral("Error in [changeImageAction:] : %1").arg(reason));
        showPicture();
        alerts_.critical(this, tr("Unable to load selected image!")); // the window may be gone afterwards
    });
}

void ImageStampWindowController::connectSide(NumberField& field, std::int64_t ImageStamp::*side,
                                             NumberField& otherField, std::int64_t ImageStamp::*otherSide)
{
    field.setValidator(new CustomNumberFormatterInteger(largestSide, &field));
    connect(&field, &QLineEdit::textEdited, this, [this, &field, side, &otherField, otherSide] {
        change([&](ImageStamp& s) {
            s.*side = std::clamp<std::int64_t>(field.integerValue(), 0, largestSide);
            const auto& picture = ui_->stampImageView->picture();
            if (!isAspectRatio() || !picture) return;
            const QSize whole = picture->image().size();
            const bool isWidth = side == &ImageStamp::stampImageWidth;
            s.*otherSide = isWidth ? inProportion(s.*side, whole.width(), whole.height())
                                   : inProportion(s.*side, whole.height(), whole.width());
            otherField.setIntegerValue(s.*otherSide);
        });
    });
    connect(&field, &NumberField::integerEdited, this, [this, &field, side] {
        if (image()) field.setIntegerValue(image()->*side);
    });
}

QString ImageStampWindowController::title() const
{
    QString name = image()->label().value_or(QString());
    if (name.isEmpty() && image()->stampImagePath)
        name = readableName(FilePath::fromText(*image()->stampImagePath).stem());
    return tr("Image Stamp Properties [%1]").arg(name);
}

void ImageStampWindowController::showFields()
{
    ui_->imageOpacityField->showPercent(image()->stampImageOpacity);
    ui_->rotationField->showDegrees(static_cast<double>(image()->stampImageRotation));
    showSize();
    showPicture();
}

bool ImageStampWindowController::isAspectRatio() const
{
    return ui_->aspectRatioCheckbox->isChecked();
}

void ImageStampWindowController::setIsAspectRatio(bool locked)
{
    ui_->aspectRatioCheckbox->setChecked(locked);
}

void ImageStampWindowController::change(const std::function<void(ImageStamp&)>& edit)
{
    if (!editedStamp()) return;
    edit(*image());
    settingsChanged();
}

void ImageStampWindowController::changeImageAction()
{
    if (!editedStamp()) return;
    desktop::OpenPanel panel;
    panel.message = tr("Please Select Stamp Image (Only BMP,JPG,JPEG,PNG,GIF Files):");
    panel.types = pictureTypes();
    panels_.open(this, panel, [window = QPointer(this)](const QList<FilePath>& paths) {
        if (window && !paths.isEmpty()) window->loadPicture(paths.front());
    });
}

void ImageStampWindowController::loadPicture(const FilePath& path)
{
    if (!stamp()) return;
    waiting_.reset();
    loader_.load(path);
    showPicture();
}

void ImageStampWindowController::refuse(qint64 bytes)
{
    const auto megabytes = [](qint64 size) { return QString::number((size + (1 << 20) - 1) >> 20); };
    logLine(
        QStringLiteral("Error in [changeImageAction:] : pictures of %1 bytes cannot be saved").arg(bytes));
    const QString reason = tr("The pictures of all stamps would have %1 MB together and could not be saved; "
                              "%2 MB is the most.")
                               .arg(megabytes(bytes), megabytes(Numbering::mostPictureBytes));
    alerts_.critical(this, tr("Unable to load selected image!") + QStringLiteral("\n\n") + reason);
}

void ImageStampWindowController::take(const LoadedPicture& picture)
{
    if (!editedStamp()) return;
    setIsAspectRatio(false);
    image()->take(picture);
    showSize();
    showPicture();
    setIsAspectRatio(true);
    settingsChanged();
}

void ImageStampWindowController::removeImageAction()
{
    if (!editedStamp()) return;
    loader_.cancel();
    image()->removePicture();
    showSize();
    showPicture();
    settingsChanged();
}

void ImageStampWindowController::editingEnabledChanged()
{
    if (!isEditingEnabled() || !waiting_) return;
    const LoadedPicture picture = *std::exchange(waiting_, std::nullopt);
    take(picture);
}

void ImageStampWindowController::showPicture()
{
    if (!image()) return;
    const auto& picture = image()->cacheImage();
    const bool hasBytes = image()->stampImage() && !image()->stampImage()->isEmpty();
    ui_->stampImageView->setBusy(loader_.isLoading());
    ui_->stampImageView->setHint(loader_.isLoading() ? tr("Reading the picture…")
                                 : hasBytes
                                     ? tr("The picture of this stamp cannot be read.")
                                     : tr("Drop a picture here, or choose one.\nBMP, JPEG, PNG or GIF"));
    ui_->stampImageView->showPicture(picture);
    ui_->removeImageButton->setEnabled(hasBytes);

    QString facts;
    if (loader_.isLoading()) {
        facts = tr("Reading the picture…");
    } else if (picture) {
        const QString file =
            readableName(FilePath::fromText(image()->stampImagePath.value_or(QString())).name());
        const QSize whole = picture->image().size();
        facts = tr("%1 × %2 pixels").arg(whole.width()).arg(whole.height());
        if (!file.isEmpty()) facts = tr("%1, %2", "file name, size").arg(file, facts);
    }
    ui_->pictureFactsLabel->setText(facts);
    ui_->pictureFactsLabel->setToolTip(readableName(image()->stampImagePath.value_or(QString())));
}

void ImageStampWindowController::showSize()
{
    const auto show = [](NumberField& field, std::int64_t side) {
        // While the user types, the text may differ from the value's own, such as an empty text for 0.
        if (!field.hasFocus() || field.integerValue() != side) field.setIntegerValue(side);
    };
    show(*ui_->stampImageWidthTextField, image()->stampImageWidth);
    show(*ui_->stampImageHeightTextField, image()->stampImageHeight);
}

} // namespace quillfern
