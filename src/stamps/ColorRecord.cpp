#include "stamps/ColorRecord.h"

#include "platform/store/ArchivedColor.h"

namespace quillfern {

QByteArray colorToBytes(const QColor& color)
{
    return color.name(QColor::HexArgb).toUpper().toLatin1();
}

std::optional<QColor> colorFromBytes(const std::optional<QByteArray>& bytes)
{
    if (!bytes) return std::nullopt;
    if (bytes->size() == 9 && bytes->startsWith('#')) {
        const QColor color(QString::fromLatin1(*bytes));
        if (color.isValid()) return color;
    }
    // Older profiles keep colours as archived objects.
    return store::readArchivedColor(*bytes).value_or(QColor(Qt::black));
}

} // namespace quillfern
