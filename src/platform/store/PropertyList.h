#pragma once

#include "platform/store/Record.h"
#include "platform/system/FilePath.h"

#include <QByteArray>
#include <QtGlobal>

namespace quillfern::store {

/// In bytes, far above any real settings. A larger file is not ours and is refused before it is parsed.
inline constexpr qint64 largestPropertyList = 256LL << 20;

/// The record as a property list in XML form, UTF-8, its entries in their order. Characters that XML cannot
/// hold are left out of texts. The bytes are the same whatever the program's locale. Throws Failure when the
/// result would be larger than largestPropertyList.
[[nodiscard]] QByteArray writePropertyList(const Record& record);

/// Reads a property list whose top level is a dictionary, in XML form (UTF-8 or UTF-16) or in binary form,
/// whatever the program's locale. The bytes may come from anywhere: the time is linear in their number, and
/// the depth and number of values are limited. Values that a record does not know (dates, references) are
/// left out; of several values under one key the last counts, in the place of the first. Integers beyond 63
/// bits wrap around. Throws Failure, with a reason that says what is wrong, for everything that is not a
/// whole property list.
[[nodiscard]] Record readPropertyList(const QByteArray& bytes);

/// The same for a file. Throws Failure also when it cannot be read.
[[nodiscard]] Record readPropertyListFile(const FilePath& path);

} // namespace quillfern::store
