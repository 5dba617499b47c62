#pragma once

#include "config/Numbering.h"

#include <QRectF>
#include <QSizeF>

namespace quillfern {

inline constexpr double pointsPerInch = 72.0;
inline constexpr double millimetresPerInch = 25.4;
inline constexpr double wholePercent = 100.0;

/// The units of a configuration's margins and what follows from them. Works on the configuration it is given
/// and keeps nothing of its own. Nothing is rounded anywhere; margins of zero or less are never converted.
class Margins
{
  public:
    explicit Margins(Numbering& number) : number_(number) {}

    /// A length in the present margin unit, in points.
    [[nodiscard]] double convertToPointUnit(double value) const;

    /// Converts the margins from `previousUnit` to the present unit, whatever the percentage switch says.
    void convertPoints(std::int32_t previousUnit);

    /// Converts the margins after isMarginInPercentage was switched: into percent of `size` (points), or out
    /// of percent into the present unit. A size of zero gives values that are not finite.
    void convertPointsToPercentage(const QSizeF& size);

    /// The area inside the margins on a page of `size` points, origin at the top left, y down. Its width and
    /// height can be negative.
    [[nodiscard]] QRectF marginRect(const QSizeF& size) const;

    /// The same for PDF output, where a percentage counts as a length in the margin unit.
    [[nodiscard]] QRectF lengthRect(const QSizeF& size) const;

    /// The user chose another unit: lengths are converted, percentages stay. Tells nobody.
    void unitChanged(std::int32_t unit);
    /// The user switched percentages; `size` is the preview's on the screen. Tells nobody.
    void isMarginPercentageChanged(const QSizeF& size);
    /// All margins back to zero; tells the delegate once when one of them was not.
    void resetMargins();

  private:
    template <class Convert>
    void convertEach(Convert convert);
    [[nodiscard]] double inset(double margin, double dimension, bool inPercentage) const;
    [[nodiscard]] QRectF rect(const QSizeF& size, bool inPercentage) const;

    Numbering& number_;
};

} // namespace quillfern
