#pragma once

#include "config/Numbering.h"

#include <QSizeF>
#include <cstdint>

namespace quillfern {

/// The user's operations on the margins and their unit. They change the configuration that the constructor
/// takes; the class has no other state. Nothing is rounded, and margins of zero or less are never converted.
class Margins
{
  public:
    explicit Margins(Numbering& number) : number_(number) {}

    /// Converts the margins from `previousUnit` to the present unit, whatever the percentage switch says.
    void convertPoints(MarginUnit previousUnit);

    /// Converts the margins after isMarginInPercentage was switched: into percent of `size` (points), or out
    /// of percent into the present unit. A size of zero gives values that are not finite.
    void convertPointsToPercentage(const QSizeF& size);

    /// The user chose another unit: lengths are converted, percentages stay. Notifies nobody.
    void unitChanged(MarginUnit unit);
    /// The user switched percentages; `size` is the preview's on the screen. Notifies nobody.
    void isMarginPercentageChanged(const QSizeF& size);
    /// All margins back to zero; notifies the delegate once when one of them was not.
    void resetMargins();

  private:
    template <class Convert>
    void convertEach(Convert convert);

    Numbering& number_;
};

} // namespace quillfern
