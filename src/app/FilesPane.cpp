#include "app/FilesPane.h"

#include "app/WindowActions.h"
#include "dialogs/KeyHint.h"
#include "dialogs/ThemedIcon.h"
#include "ui_FilesPane.h"

#include <QPainter>

namespace quillfern {

namespace {

constexpr int hintPicture = 72;

/// A picture that follows the palette and the screen.
class IconView final : public QWidget
{
  public:
    IconView(QIcon icon, QWidget* parent) : QWidget(parent), icon_(std::move(icon))
    {
        setFixedSize(hintPicture, hintPicture);
    }

  protected:
    void paintEvent(QPaintEvent*) override
    {
        QPainter painter(this);
        icon_.paint(&painter, rect(), Qt::AlignCenter, QIcon::Disabled);
    }

  private:
    QIcon icon_;
};

} // namespace

FilesPane::FilesPane(QWidget* parent) : QWidget(parent), ui_(std::make_unique<Ui::FilesPane>())
{
    ui_->setupUi(this);
    setButtonKeyCharacter(*ui_->inculdeSubfoldersBtn, QStringLiteral("u"), QColor());
    makeHint();
    connect(ui_->inculdeSubfoldersBtn, &QCheckBox::toggled, this, &FilesPane::includesSubfoldersChanged);
}

FilesPane::~FilesPane() = default;

void FilesPane::bindActions(const WindowActions& actions, QMenu* contextMenu)
{
    ui_->mainTableView->addActions(actions.ofFilesTable());
    ui_->mainTableView->setContextMenu(contextMenu);
}

CustomTableView& FilesPane::table()
{
    return *ui_->mainTableView;
}

bool FilesPane::includesSubfolders() const
{
    return ui_->inculdeSubfoldersBtn->isChecked();
}

void FilesPane::setIncludesSubfolders(bool included)
{
    ui_->inculdeSubfoldersBtn->setChecked(included);
}

void FilesPane::showTotals(const QString& text)
{
    ui_->labelTotalFiles->setText(text);
}

void FilesPane::showHint(bool shown)
{
    lableDragAndDrop_->setVisible(shown);
}

void FilesPane::setListEnabled(bool enabled)
{
    ui_->inculdeSubfoldersBtn->setEnabled(enabled);
    ui_->mainTableView->setEnabled(enabled);
}

void FilesPane::makeHint()
{
    QWidget* viewport = ui_->mainTableView->viewport();
    lableDragAndDrop_ = new QWidget(viewport);
    lableDragAndDrop_->setObjectName(QStringLiteral("lableDragAndDrop"));
    lableDragAndDrop_->setAttribute(Qt::WA_TransparentForMouseEvents); // drops go to the table
    auto* picture = new IconView(themedIcon(QStringLiteral("drop-files")), lableDragAndDrop_);
    auto* text = new QLabel(tr("Drop PDF and picture files or folders here"), lableDragAndDrop_);
    text->setAlignment(Qt::AlignCenter);
    text->setWordWrap(true);
    QFont large = text->font();
    large.setPointSizeF(large.pointSizeF() * 1.25);
    text->setFont(large);
    text->setForegroundRole(QPalette::PlaceholderText);
    auto* other = new QLabel(tr("or use Add Files, Add Folder and Import above"), lableDragAndDrop_);
    other->setAlignment(Qt::AlignCenter);
    other->setWordWrap(true);
    other->setForegroundRole(QPalette::PlaceholderText);
    auto* layout = new QVBoxLayout(lableDragAndDrop_);
    layout->addStretch(2);
    layout->addWidget(picture, 0, Qt::AlignHCenter);
    layout->addSpacing(8);
    layout->addWidget(text);
    layout->addWidget(other);
    layout->addStretch(3);
    auto* fill = new QVBoxLayout(viewport);
    fill->addWidget(lableDragAndDrop_);
}

} // namespace quillfern
