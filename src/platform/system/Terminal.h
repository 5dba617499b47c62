#pragma once

#include <QByteArray>
#include <functional>

namespace quillfern {

// The three streams that a program is started with.

/// Opens those of the three that the program was started without as an empty device. Otherwise the next file
/// that is opened would be taken for one of them, and what is printed would go into a document. For the begin
/// of a program.
void keepStandardStreams();

/// The columns of the terminal that the standard error stream is; 0 when the stream is no terminal or the
/// terminal does not say.
[[nodiscard]] int terminalColumns();

/// All bytes of the standard input, until the stream ends or `goOn`, which is called a few times a second
/// while nothing comes, returns false. Throws Failure when the stream cannot be read or holds more than
/// `most` bytes.
[[nodiscard]] QByteArray readStandardInput(qint64 most, const std::function<bool()>& goOn);

} // namespace quillfern
