#pragma once

#include "platform/store/Record.h"

#include <QByteArray>
#include <QString>
#include <QtGlobal>
#include <optional>

namespace quillfern::store {

// What the readers of the two forms of property lists have in common; see readPropertyList(). Both throw
// Failure for bytes that they refuse.

[[nodiscard]] Record readXmlPropertyList(const QByteArray& bytes);
[[nodiscard]] Record readBinaryPropertyList(QByteArrayView bytes);

/// Objects of a list that are more than these are refused.
inline constexpr quint64 mostPropertyListValues = 1'000'000;

[[noreturn]] void refusePropertyList(const QString& reason);
[[noreturn]] void refusePropertyList(const char* reason);

/// Counts a value of a list; `depth` dictionaries and lists are open around it. Throws Failure where there
/// are too many.
void countPropertyListValue(quint64& values, int depth);

/// Empty for a value of a kind that a record cannot hold.
using MaybeValue = std::optional<RecordValue>;

} // namespace quillfern::store
