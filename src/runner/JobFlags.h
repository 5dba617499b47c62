#pragma once

#include "config/Numbering.h"

#include <QString>

namespace quillfern {

/// Applies an option of which pages, sizes and passwords a job takes (JobOptions) to the configuration; false
/// for any other option. "-" as the file of a password is read from the standard input. Throws WrongUse.
bool applyJobFlag(Numbering& number, const QString& name, const QString& value);

} // namespace quillfern
