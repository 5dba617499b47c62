#pragma once

#include <QByteArray>

namespace quillfern {

/// Looks through a property list in XML or binary form before the library that parses it sees the bytes: that
/// one reads leniently, recurses as deep as the file says and makes a node for everything it meets. Throws
/// Failure unless the bytes are one well-formed property list of sane depth and number of values.
void checkPropertyList(const QByteArray& bytes);

[[nodiscard]] bool isBinaryPropertyList(const QByteArray& bytes);

} // namespace quillfern
