#pragma once

#include "config/Numbering.h"
#include "runner/OptionValues.h"

#include <QString>
#include <span>

namespace quillfern {

/// The command line's options that are a job's own (JobOptions): which pages, sizes and passwords.
[[nodiscard]] std::span<const Option> jobFlags();

/// Applies one of them to the configuration; false for any other option. "-" as the file of a password is
/// read from the standard input. Throws WrongUse.
bool applyJobFlag(Numbering& number, const QString& name, const QString& value);

} // namespace quillfern
