#include "dialogs/PDFReadPasswordWindowController.h"

#include "ui_PDFReadPassword.h"

#include <QShowEvent>

namespace quillfern {

PDFReadPasswordWindowController::PDFReadPasswordWindowController(QWidget* parent)
    : QDialog(parent), ui_(std::make_unique<Ui::PDFReadPassword>())
{
    ui_->setupUi(this);
    setWindowModality(Qt::WindowModal);
    connect(ui_->showPasswordBtn, &QCheckBox::toggled, this, [this](bool isShown) {
        ui_->passwordField->setEchoMode(isShown ? QLineEdit::Normal : QLineEdit::Password);
    });
    connect(ui_->applyBtn, &QPushButton::clicked, this, &PDFReadPasswordWindowController::applyAction);
    connect(ui_->cancelBtn, &QPushButton::clicked, this, &PDFReadPasswordWindowController::cancelAction);
}

PDFReadPasswordWindowController::~PDFReadPasswordWindowController() = default;

QString PDFReadPasswordWindowController::pdfReadPassword() const
{
    return ui_->passwordField->text();
}

void PDFReadPasswordWindowController::applyAction()
{
    Q_EMIT PDFReadPasswordWindowControllerDidFinish(pdfReadPassword());
    accept();
}

void PDFReadPasswordWindowController::cancelAction()
{
    reject();
}

void PDFReadPasswordWindowController::showEvent(QShowEvent* event)
{
    if (!event->spontaneous()) {
        ui_->showPasswordBtn->setChecked(false);
        ui_->passwordField->setFocus();
        ui_->passwordField->selectAll();
    }
    QDialog::showEvent(event);
}

} // namespace quillfern
