#pragma once

#include <QString>

namespace quillfern {

/// Writes one line to the system log (Qt's logging, category "quillfern", which reaches the journal or the
/// standard error stream). May be called from any thread. Never shown in a window.
void logLine(const QString& line);

/// Like logLine, for successful events that an administrator should know of.
void logNotice(const QString& line);

/// `pattern` with its "%@" replaced by `reason`, as one line.
[[nodiscard]] QString failureLine(const char* pattern, const QString& reason);

} // namespace quillfern
