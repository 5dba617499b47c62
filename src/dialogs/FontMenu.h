#pragma once

#include "stamps/PDFFont.h"

#include <QComboBox>
#include <QString>
#include <vector>

namespace quillfern {

/// A menu of font families, each written in its own face, in which a family is found by typing any part of
/// its name. Faces are loaded as they come into sight, so hundreds of families open at once.
class FontMenu final : public QComboBox
{
    Q_OBJECT

  public:
    explicit FontMenu(QWidget* parent = nullptr);

    /// One row for every font; one named "-" is a separator.
    void setFonts(const std::vector<PDFFont>& fonts);
    /// Shows a family, also one that is not in the menu.
    void showFamily(const QString& family);

  Q_SIGNALS:
    /// The user has chosen another row.
    void familyChosen(int row);

  protected:
    void hideEvent(QHideEvent* event) override;

  private:
    void select(const QString& family);
    void choose(int row);
    void takeNearest();
    void restore();

    QString family_; ///< the chosen family, also while another name is being typed
};

} // namespace quillfern
