#include "app/OutputForm.h"

#include "platform/system/FileFacts.h"
#include "platform/system/Folders.h"
#include "platform/system/NativePath.h"
#include "ui_MainWindow.h"

#include <QSignalBlocker>

namespace quillfern {

OutputForm::OutputForm(Ui::MainWindow& ui, Settings& settings, FilePanels& panels, QObject& window)
    : ui_(ui), settings_(settings), panels_(panels), window_(window)
{
    const auto bind = [this](QCheckBox& box, bool& field) {
        connect(&box, &QCheckBox::toggled, this, [&field](bool on) { field = on; });
    };
    bind(*ui.setCurrentAsDefaultOutputFolderPathBtn, settings.isSetCurrentAsDefaultOutputFolderPath);
    bind(*ui.openFolderAfterConversionBtn, settings.isOpenFolderAfterConversion);
    bind(*ui.isClearProcessedFiles, settings.isClearProcessedFiles);
    connect(ui.isBackupFile, &QCheckBox::toggled, this,
            [this](bool on) { settings_.number->setIsBackupFile(on); });
    connect(ui.outputFolderPath, &QLineEdit::textChanged, this, &OutputForm::setOutputFolderPath);
    connect(ui.outputFolderPath, &QLineEdit::editingFinished, this, &OutputForm::completeTypedFolder);
    connect(ui.pdfOpenPassword, &QLineEdit::textChanged, this,
            [this](const QString& text) { settings_.pdfOpenPassword = text; });
    connect(ui.outputFolderButton, &QPushButton::clicked, this, &OutputForm::chooseOutputFolder);
    refresh();
}

void OutputForm::refresh()
{
    const auto show = [](QCheckBox& box, bool on) {
        const QSignalBlocker blocker(box);
        box.setChecked(on);
    };
    show(*ui_.setCurrentAsDefaultOutputFolderPathBtn, settings_.isSetCurrentAsDefaultOutputFolderPath);
    show(*ui_.openFolderAfterConversionBtn, settings_.isOpenFolderAfterConversion);
    show(*ui_.isClearProcessedFiles, settings_.isClearProcessedFiles);
    show(*ui_.isBackupFile, settings_.number->isBackupFile());
    const auto showText = [](QLineEdit& field, const std::optional<QString>& text) {
        const QSignalBlocker blocker(field);
        if (field.text() != text.value_or(QString())) field.setText(text.value_or(QString()));
    };
    showText(*ui_.outputFolderPath, settings_.outputFolderPath);
    showText(*ui_.pdfOpenPassword, settings_.pdfOpenPassword);
}

void OutputForm::updateFolderOptions()
{
    const bool hasFolder = settings_.outputFolderPath && !settings_.outputFolderPath->isEmpty();
    if (!hasFolder) settings_.isSetCurrentAsDefaultOutputFolderPath = false;
    ui_.setCurrentAsDefaultOutputFolderPathBtn->setEnabled(hasFolder);
    ui_.openFolderAfterConversionBtn->setEnabled(hasFolder);
    refresh();
}

void OutputForm::setOutputFolderPath(const QString& path)
{
    settings_.outputFolderPath = path;
    ui_.outputFolderPath->setToolTip(readableName(path));
    // A field that is emptied to type another folder is not yet a folder given up.
    if (!ui_.outputFolderPath->hasFocus()) Q_EMIT outputFolderPathChanged();
}

void OutputForm::completeTypedFolder()
{
    QString path = ui_.outputFolderPath->text();
    if (fileKind(FilePath::fromText(path)) == FileKind::Missing) path = path.trimmed();
    if (path == QLatin1String("~") || path.startsWith(QLatin1String("~/")))
        path.replace(0, 1, homeFolder().text());
    if (!path.isEmpty()) path = FilePath::fromText(path).text();
    if (path != ui_.outputFolderPath->text()) ui_.outputFolderPath->setText(path);
    Q_EMIT outputFolderPathChanged();
}

void OutputForm::chooseOutputFolder()
{
    OpenPanel panel;
    panel.message = tr("Select output folder:");
    panel.folders = true;
    panels_.open(&window_, panel, [this](const QList<FilePath>& paths) {
        if (paths.isEmpty()) return;
        ui_.outputFolderPath->setText(paths.constFirst().text());
        settings_.synchronize();
    });
}

} // namespace quillfern
