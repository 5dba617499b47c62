#include "config/Margins.h"

#include "config/PageArea.h"
#include "platform/system/Guarded.h"

namespace quillfern {

namespace {

double converted(double value, MarginUnit from, MarginUnit to)
{
    if (from == MarginUnit::Millimetres && to == MarginUnit::Points)
        return value * pointsPerInch / millimetresPerInch;
    if (from == MarginUnit::Millimetres && to == MarginUnit::Inches) return value / millimetresPerInch;
    if (from == MarginUnit::Inches && to == MarginUnit::Points) return value * pointsPerInch;
    if (from == MarginUnit::Inches && to == MarginUnit::Millimetres) return value * millimetresPerInch;
    if (from == MarginUnit::Points && to == MarginUnit::Inches) return value / pointsPerInch;
    if (from == MarginUnit::Points && to == MarginUnit::Millimetres)
        return value / pointsPerInch * millimetresPerInch;
    return value;
}

} // namespace

template <class Convert>
void Margins::convertEach(Convert convert)
{
    if (number_.marginTop() > 0) number_.setMarginTop(convert(number_.marginTop(), false));
    if (number_.marginLeft() > 0) number_.setMarginLeft(convert(number_.marginLeft(), true));
    if (number_.marginRight() > 0) number_.setMarginRight(convert(number_.marginRight(), true));
    if (number_.marginBottom() > 0) number_.setMarginBottom(convert(number_.marginBottom(), false));
}

void Margins::convertPoints(MarginUnit previousUnit)
{
    convertEach([&](double value, bool) { return converted(value, previousUnit, number_.marginUnit()); });
}

void Margins::convertPointsToPercentage(const QSizeF& size)
{
    const bool toPercentage = number_.isMarginInPercentage();
    convertEach([&](double value, bool horizontal) {
        const double dimension = horizontal ? size.width() : size.height();
        return toPercentage ? convertToPointUnit(number_.fields(), value) / dimension * wholePercent
                            : value * dimension / wholePercent;
    });
    if (!toPercentage) convertPoints(MarginUnit::Points);
}

void Margins::unitChanged(MarginUnit unit)
{
    guarded("Error in [unitChanged:] : %@", [&] {
        const MarginUnit previous = number_.marginUnit();
        number_.setMarginUnit(unit);
        if (number_.isMarginInPercentage()) return;
        number_.beginUpdate();
        convertPoints(previous);
        number_.endUpdate(false);
    });
}

void Margins::isMarginPercentageChanged(const QSizeF& size)
{
    guarded("Error in [isMarginPercentageChanged:] : %@", [&] {
        number_.beginUpdate();
        convertPointsToPercentage(size);
        number_.endUpdate(false);
    });
}

void Margins::resetMargins()
{
    number_.beginUpdate();
    const bool changed = number_.marginTop() != 0 || number_.marginLeft() != 0 ||
                         number_.marginRight() != 0 || number_.marginBottom() != 0;
    number_.setMarginTop(0);
    number_.setMarginLeft(0);
    number_.setMarginRight(0);
    number_.setMarginBottom(0);
    number_.endUpdate(changed);
}

} // namespace quillfern
