#pragma once

#include <QDialog>
#include <QString>
#include <memory>

namespace quillfern {

namespace Ui {
class PDFReadPassword;
}

/// Asks for the password that opens the selected PDF files: a sheet on its parent's window. It is kept
/// between uses and shows the value last typed, hidden; open() begins a use.
class PDFReadPasswordWindowController final : public QDialog
{
    Q_OBJECT

  public:
    explicit PDFReadPasswordWindowController(QWidget* parent);
    ~PDFReadPasswordWindowController() override;

    /// What stands in the field, applied or not; empty at first.
    [[nodiscard]] QString pdfReadPassword() const;

    void applyAction();
    void cancelAction();

  Q_SIGNALS:
    /// The user wants this password, perhaps an empty one, for the files. The dialog closes afterwards.
    void PDFReadPasswordWindowControllerDidFinish(const QString& password);

  protected:
    /// Whoever opens the dialog anew finds the password hidden and ready to be typed over.
    void showEvent(QShowEvent* event) override;

  private:
    std::unique_ptr<Ui::PDFReadPassword> ui_;
};

} // namespace quillfern
