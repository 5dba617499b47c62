#pragma once

#include "platform/system/FilePath.h"

namespace quillfern {

class Numbering;

/// Writes the configuration into a profile file, an XML property list; an existing file is replaced only
/// after the new one was written completely. Throws Failure.
void saveProfile(const Numbering& number, const FilePath& path);

/// Reads a profile file, applies it and fills absent values. Throws Failure, with nothing changed, when the
/// file cannot be read, is no property-list dictionary or has none of a configuration's keys.
void loadProfile(Numbering& number, const FilePath& path);

} // namespace quillfern
