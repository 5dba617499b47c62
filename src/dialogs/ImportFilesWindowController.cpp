#include "dialogs/ImportFilesWindowController.h"

#include "dialogs/DropAsCopy.h"
#include "dialogs/KeyHint.h"
#include "platform/desktop/Alerts.h"
#include "platform/desktop/FilePanels.h"
#include "ui_ImportFiles.h"

#include <QClipboard>
#include <QDropEvent>
#include <QGuiApplication>
#include <QMimeData>

namespace quillfern {

namespace {

/// Switches a radio button on or off. An exclusive group would keep its last button on.
void setOn(QRadioButton& button, bool isOn)
{
    button.setAutoExclusive(false);
    button.setChecked(isOn);
    button.setAutoExclusive(true);
}

/// The text as it was entered. toPlainText() replaces no-break spaces by ordinary ones, and a path with such
/// a space would then name another file.
QString textOf(const QPlainTextEdit& edit)
{
    return edit.document()->toRawText().replace(QChar::ParagraphSeparator, u'\n');
}

} // namespace

ImportFilesWindowController::ImportFilesWindowController(desktop::FilePanels& panels, desktop::Alerts& alerts,
                                                         QWidget* parent)
    : QDialog(parent), panels_(panels), alerts_(alerts), ui_(std::make_unique<Ui::ImportFiles>())
{
    ui_->setupUi(this);
    setWindowModality(Qt::WindowModal);
    connectButtons();
    awakeFromNib();
    showTotal();
}

ImportFilesWindowController::~ImportFilesWindowController() = default;

void ImportFilesWindowController::connectButtons()
{
    connect(ui_->importFromFileBtn, &QRadioButton::clicked, this,
            [this] { importMethodChanged(PathListImport::FromFile); });
    connect(ui_->importFromTextBtn, &QRadioButton::clicked, this,
            [this] { importMethodChanged(PathListImport::FromText); });
    using Self = ImportFilesWindowController;
    connect(ui_->browseBtn, &QPushButton::clicked, this, &Self::browseImportFileAction);
    connect(ui_->pasteFromClipboardBtn, &QPushButton::clicked, this, &Self::pasetFromClipboardAction);
    connect(ui_->importBtn, &QPushButton::clicked, this, &Self::importAction);
    connect(ui_->cancelBtn, &QPushButton::clicked, this, &Self::cancelAction);
}

void ImportFilesWindowController::awakeFromNib()
{
    setButtonKeyCharacter(*ui_->importFromFileBtn, QStringLiteral("F"), QColor(), 2);
    setButtonKeyCharacter(*ui_->importFromTextBtn, QStringLiteral("T"), QColor(), 2);
    setButtonKeyCharacter(*ui_->pasteFromClipboardBtn, QStringLiteral("p"), QColor(), 1);
    setButtonKeyCharacter(*ui_->importBtn, QStringLiteral("i"), QColor(), 1);
    importMethodChanged(PathListImport::FromFile);
}

void ImportFilesWindowController::setAllowedTypes(const QString& allowedTypes)
{
    const std::optional<PathListImport::Method> method = import_.method();
    import_ = PathListImport(allowedTypes);
    importMethodChanged(method ? *method : -1);
    showTotal();
}

void ImportFilesWindowController::resetView()
{
    import_.resetView();
    showTexts();
    showTotal();
    if (import_.method() == PathListImport::FromFile) ui_->importFromFileBtn->setFocus();
    if (import_.method() == PathListImport::FromText) ui_->importFromTextBtn->setFocus();
}

void ImportFilesWindowController::importMethodChanged(int tag)
{
    import_.importMethodChanged(tag);
    const bool isFile = import_.method() == PathListImport::FromFile;
    const bool isText = import_.method() == PathListImport::FromText;
    showTexts();
    setOn(*ui_->importFromFileBtn, isFile);
    setOn(*ui_->importFromTextBtn, isText);
    // The focus moves before a field is disabled; Qt would move it to any other field otherwise.
    if (isFile) ui_->importFromFileBtn->setFocus();
    if (isText) ui_->importFromTextBtn->setFocus();
    ui_->importFile->setEnabled(isFile);
    ui_->browseBtn->setEnabled(isFile);
    ui_->importText->setEnabled(isText); // shows the palette's colours for disabled text
    ui_->pasteFromClipboardBtn->setEnabled(isText);
}

void ImportFilesWindowController::browseImportFileAction()
{
    panels_.open(this, {tr("Select Text File To Import:"), {QStringLiteral("txt")}, false, false, true},
                 [this](const QList<FilePath>& paths) {
                     if (!paths.isEmpty()) ui_->importFile->setText(paths.constLast().text());
                 });
}

void ImportFilesWindowController::pasetFromClipboardAction()
{
    if (const QMimeData* const copied = QGuiApplication::clipboard()->mimeData()) paste(pathListOf(*copied));
}

void ImportFilesWindowController::paste(const QString& text)
{
    if (text.isEmpty()) return;
    import_.pasteText(text);
    showTexts();
    showTotal();
    showRemark();
}

void ImportFilesWindowController::showRemark()
{
    const QString remark = import_.remark();
    if (!remark.isEmpty()) alerts_.information(this, remark);
}

void ImportFilesWindowController::importAction()
{
    readFields();
    const std::optional<PathListImport::Problem> problem = import_.importAction();
    showTotal();
    if (!problem) {
        showRemark(); // while the dialog that the remark is about is visible
        Q_EMIT ImportFilesWindowControllerDidFinish(import_.files());
        accept();
        return;
    }
    alerts_.information(this, problem->message);
    if (problem->focus == PathListImport::Problem::Focus::Browse) ui_->browseBtn->setFocus();
    if (problem->focus == PathListImport::Problem::Focus::Text) ui_->importText->setFocus();
}

void ImportFilesWindowController::cancelAction()
{
    reject();
}

void ImportFilesWindowController::readFields()
{
    import_.setImportFile(ui_->importFile->text());
    // The text area is read only after an edit: names can hold line ends, which the area does not show.
    if (ui_->importText->document()->isModified()) import_.setImportText(textOf(*ui_->importText));
}

void ImportFilesWindowController::showTexts()
{
    ui_->importFile->setText(import_.importFile());
    ui_->importText->setPlainText(import_.importText());
}

void ImportFilesWindowController::showTotal()
{
    ui_->totalFilesFound->setText(import_.totalFilesFound());
}

void ImportFilesWindowController::dragEnterEvent(QDragEnterEvent* event)
{
    if (event->mimeData()->hasUrls() || event->mimeData()->hasText()) acceptAsCopy(*event);
}

void ImportFilesWindowController::dropEvent(QDropEvent* event)
{
    const QMimeData& dropped = *event->mimeData();
    if (!acceptAsCopy(*event)) return;
    const QList<FilePath> paths = filePaths(dropped.urls());
    if (paths.size() == 1 && paths.constFirst().extension().compare(u"txt", Qt::CaseInsensitive) == 0) {
        importMethodChanged(PathListImport::FromFile);
        ui_->importFile->setText(paths.constFirst().text());
    } else {
        importMethodChanged(PathListImport::FromText);
        paste(pathListOf(dropped));
    }
}

} // namespace quillfern
