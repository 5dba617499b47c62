#pragma once

#include <QDialog>

namespace quillfern {

/// Tells which program and version this is, and on what terms it and what it is made with may be used.
class AboutDialog final : public QDialog
{
    Q_OBJECT

  public:
    explicit AboutDialog(QWidget* parent = nullptr);
};

} // namespace quillfern
