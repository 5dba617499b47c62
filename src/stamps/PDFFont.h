#pragma once

#include "platform/store/Record.h"

#include <QColor>
#include <QString>
#include <cstdint>
#include <optional>

namespace quillfern {

/// The font of a text stamp: which family, at what size, in which colour.
class PDFFont
{
  public:
    std::optional<QString> fontName =
        QStringLiteral("Helvetica"); ///< family; a substitute serves if it is missing
    std::int32_t fontID = 4;         ///< kept and saved; drawing does not read it
    double fontSize = 12.0;          ///< points
    bool isStandard = false;         ///< one of the standard PDF fonts; kept and saved
    std::optional<QColor> fontColor = QColor(Qt::black);

    PDFFont() = default;
    [[nodiscard]] static PDFFont initWithFont(const QString& name, std::int32_t fontID, double fontSize,
                                              bool isStandard);

    /// The font as a record, whose entries end before the first absent value. Returns no record on a failure.
    [[nodiscard]] std::optional<store::Record> getData() const;
    /// Applies a record; a missing key gives no value, 0 or false. A null pointer changes nothing.
    void setData(const store::Record* data);

    bool operator==(const PDFFont&) const = default;
};

} // namespace quillfern
