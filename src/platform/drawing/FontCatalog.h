#pragma once

#include "platform/drawing/FontSpec.h"

#include <QFont>
#include <QString>
#include <QStringList>

namespace quillfern::drawing {

/// The fonts installed on this machine, as far as they can be drawn at any size. Needs a QGuiApplication.
/// Stateless; may be used from any thread.
class FontCatalog
{
  public:
    /// Leaves out fonts that could only be drawn from bitmaps or carry no font tables, so that of a family
    /// that is installed in several formats the one that can be embedded is used. Call it once, before the
    /// application object is created; without it everything works, with fewer fonts embedded.
    static void preferEmbeddableFonts();

    /// Every installed family in the order in which the system lists them.
    [[nodiscard]] QStringList families() const;

    [[nodiscard]] bool hasBold(const QString& family) const;
    [[nodiscard]] bool hasItalic(const QString& family) const;

    /// The installed family that stands for `family`: itself when installed; what the system substitutes for
    /// it (a metric-compatible one for the common names); any sans-serif otherwise.
    [[nodiscard]] QString resolveFamily(const QString& family) const;

    /// The font for `spec` at `pixelSize`, unhinted. Bold and italic are taken only where the family has
    /// such a member: nothing is emboldened or slanted artificially.
    [[nodiscard]] QFont font(const FontSpec& spec, int pixelSize) const;
};

} // namespace quillfern::drawing
