#include "app/OutputPane.h"

#include "dialogs/KeyHint.h"
#include "dialogs/ThemedIcon.h"
#include "platform/desktop/FilePanels.h"
#include "platform/system/FileFacts.h"
#include "platform/system/Folders.h"
#include "ui_OutputPane.h"

#include <QSignalBlocker>

namespace quillfern {

OutputPane::OutputPane(QWidget* parent) : QWidget(parent), ui_(std::make_unique<Ui::OutputPane>())
{
    ui_->setupUi(this);
    // From right to left, Qt 6.4 pushes a title beside a picture against the button's border.
    if (!isRightToLeft()) ui_->outputFolderButton->setIcon(themedIcon(QStringLiteral("browse")));
    setButtonKeyCharacter(*ui_->setCurrentAsDefaultOutputFolderPathBtn, QStringLiteral("d"), QColor());
    setButtonKeyCharacter(*ui_->openFolderAfterConversionBtn, QStringLiteral("p"), QColor());
}

OutputPane::~OutputPane() = default;

void OutputPane::edit(Settings& settings, desktop::FilePanels& panels)
{
    settings_ = &settings;
    panels_ = &panels;
    const auto bind = [this](QCheckBox& box, bool& field) {
        connect(&box, &QCheckBox::toggled, this, [&field](bool on) { field = on; });
    };
    bind(*ui_->setCurrentAsDefaultOutputFolderPathBtn, settings.isSetCurrentAsDefaultOutputFolderPath);
    bind(*ui_->openFolderAfterConversionBtn, settings.isOpenFolderAfterConversion);
    bind(*ui_->isClearProcessedFiles, settings.isClearProcessedFiles);
    connect(ui_->isBackupFile, &QCheckBox::toggled, this,
            [this](bool on) { settings_->number->setIsBackupFile(on); });
    connect(ui_->outputFolderPath, &QLineEdit::textChanged, this, &OutputPane::setOutputFolderPath);
    connect(ui_->outputFolderPath, &QLineEdit::editingFinished, this, &OutputPane::completeTypedFolder);
    connect(ui_->pdfOpenPassword, &QLineEdit::textChanged, this,
            [this](const QString& text) { settings_->pdfOpenPassword = text; });
    connect(ui_->outputFolderButton, &QPushButton::clicked, this, &OutputPane::chooseOutputFolder);
    connect(this, &OutputPane::outputFolderPathChanged, this, &OutputPane::updateFolderOptions);
    refresh();
}

void OutputPane::refresh()
{
    const auto show = [](QCheckBox& box, bool on) {
        const QSignalBlocker blocker(box);
        box.setChecked(on);
    };
    show(*ui_->setCurrentAsDefaultOutputFolderPathBtn, settings_->isSetCurrentAsDefaultOutputFolderPath);
    show(*ui_->openFolderAfterConversionBtn, settings_->isOpenFolderAfterConversion);
    show(*ui_->isClearProcessedFiles, settings_->isClearProcessedFiles);
    show(*ui_->isBackupFile, settings_->number->isBackupFile());
    const auto showText = [](QLineEdit& field, const std::optional<QString>& text) {
        const QSignalBlocker blocker(field);
        if (field.text() != text.value_or(QString())) field.setText(text.value_or(QString()));
    };
    showText(*ui_->outputFolderPath, settings_->outputFolderPath);
    showText(*ui_->pdfOpenPassword, settings_->pdfOpenPassword);
}

void OutputPane::updateFolderOptions()
{
    const bool hasFolder = settings_->outputFolderPath && !settings_->outputFolderPath->isEmpty();
    if (!hasFolder) settings_->isSetCurrentAsDefaultOutputFolderPath = false;
    ui_->setCurrentAsDefaultOutputFolderPathBtn->setEnabled(hasFolder);
    ui_->openFolderAfterConversionBtn->setEnabled(hasFolder);
    refresh();
}

void OutputPane::setOutputFolderPath(const QString& path)
{
    settings_->outputFolderPath = path;
    ui_->outputFolderPath->setToolTip(path.isEmpty() ? QString() : path);
    // An empty field may mean that another folder is about to be typed: its options stay until editing ends.
    if (!ui_->outputFolderPath->hasFocus()) Q_EMIT outputFolderPathChanged();
}

void OutputPane::completeTypedFolder()
{
    QString path = ui_->outputFolderPath->text();
    if (fileKind(FilePath::fromText(path)) == FileKind::Missing) path = path.trimmed();
    if (path == QLatin1String("~") || path.startsWith(QLatin1String("~/")))
        path.replace(0, 1, homeFolder().text());
    if (!path.isEmpty()) path = FilePath::fromText(path).text();
    if (path != ui_->outputFolderPath->text()) ui_->outputFolderPath->setText(path);
    Q_EMIT outputFolderPathChanged();
}

void OutputPane::chooseOutputFolder()
{
    desktop::OpenPanel panel;
    panel.message = tr("Select output folder:");
    panel.folders = true;
    panels_->open(window(), panel, [this](const QList<FilePath>& paths) {
        if (paths.isEmpty()) return;
        ui_->outputFolderPath->setText(paths.constFirst().text());
        settings_->synchronize();
    });
}

void OutputPane::focusFolder()
{
    ui_->outputFolderPath->setFocus();
}

} // namespace quillfern
