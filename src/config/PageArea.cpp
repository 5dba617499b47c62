#include "config/PageArea.h"

namespace quillfern {

double convertToPointUnit(const JobConfiguration& job, double value)
{
    switch (job.marginUnit) {
    case MarginUnit::Millimetres:
        return value * pointsPerInch / millimetresPerInch;
    case MarginUnit::Inches:
        return value * pointsPerInch;
    default:
        return value;
    }
}

namespace {

double inset(const JobConfiguration& job, double margin, double dimension, bool inPercentage)
{
    if (!(margin > 0)) return 0;
    return inPercentage ? margin / wholePercent * dimension : convertToPointUnit(job, margin);
}

QRectF areaInside(const JobConfiguration& job, const QSizeF& size, bool inPercentage)
{
    const double left = inset(job, job.marginLeft, size.width(), inPercentage);
    const double top = inset(job, job.marginTop, size.height(), inPercentage);
    const double right = size.width() - inset(job, job.marginRight, size.width(), inPercentage);
    const double bottom = size.height() - inset(job, job.marginBottom, size.height(), inPercentage);
    return {left, top, right - left, bottom - top};
}

} // namespace

QRectF marginRect(const JobConfiguration& job, const QSizeF& size)
{
    return areaInside(job, size, job.isMarginInPercentage);
}

QRectF lengthRect(const JobConfiguration& job, const QSizeF& size)
{
    return areaInside(job, size, false);
}

} // namespace quillfern
