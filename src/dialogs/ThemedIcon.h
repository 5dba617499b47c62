#pragma once

#include <QIcon>
#include <QString>

namespace quillfern {

/// One of our own pictures (":/icons/<name>.svg"), drawn in the palette's text colour at whatever size and
/// density it is shown, so that it fits light and dark windows and stays crisp. What the picture draws in
/// `currentColor` takes that colour; other colours stay.
[[nodiscard]] QIcon themedIcon(const QString& name);

} // namespace quillfern
