#pragma once

#include <QByteArray>
#include <functional>

namespace quillfern {

// The three streams that a program is started with.

/// The columns of the terminal that the standard error stream is; 0 when the stream is no terminal or the
/// terminal does not say.
[[nodiscard]] int terminalColumns();

/// All bytes of the standard input, until the stream ends or `goOn`, which is called a few times a second
/// while nothing comes, returns false. Throws Failure when the stream cannot be read or holds more than
/// `most` bytes.
[[nodiscard]] QByteArray readStandardInput(qint64 most, const std::function<bool()>& goOn);

} // namespace quillfern
