#pragma once

#include "batch/FileOutcome.h"
#include "stamps/NumberText.h"
#include "stamps/StampList.h"

#include <QString>
#include <optional>

namespace quillfern {

/// How the numbers of a job look on its pages: in padding and style of the first stamp in use that shows the
/// page's number, in plain digits where none does. Any thread.
class StampedNumbers
{
  public:
    explicit StampedNumbers(const StampValues& stamps);

    /// The first and the last number of a file as they are printed; empty where no page was stamped.
    [[nodiscard]] QString first(const std::optional<NumbersUsed>& numbers) const;
    [[nodiscard]] QString last(const std::optional<NumbersUsed>& numbers) const;

  private:
    NumberFormat format_;
};

} // namespace quillfern
