#pragma once

#include <QDialog>

namespace quillfern {

/// Shows the program's name and version, its licence, and those of the libraries it is made with.
class AboutDialog final : public QDialog
{
    Q_OBJECT

  public:
    explicit AboutDialog(QWidget* parent = nullptr);
};

} // namespace quillfern
