#pragma once

#include "config/JobOptions.h"

#include <QString>

namespace quillfern {

/// Applies an option that names copies or lists them. Returns false for any other option. Throws WrongUse for
/// a wrong value.
[[nodiscard]] bool applyCopyOption(const QString& name, const QString& value, JobOptions& options);

} // namespace quillfern
