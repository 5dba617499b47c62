#include "batch/StampedNumbers.h"

#include "stamps/TextStamp.h"

namespace quillfern {

StampedNumbers::StampedNumbers(const StampValues& stamps)
{
    for (const auto& stamp : stamps) {
        const auto* text = dynamic_cast<const TextStamp*>(stamp.get());
        if (!text || !text->isSelected() || !showsNumber(text->number)) continue;
        format_ = text->number;
        return;
    }
}

QString StampedNumbers::first(const std::optional<NumbersUsed>& numbers) const
{
    return numbers ? slotText(format_, numbers->first) : QString();
}

QString StampedNumbers::last(const std::optional<NumbersUsed>& numbers) const
{
    return numbers ? slotText(format_, numbers->last) : QString();
}

} // namespace quillfern
