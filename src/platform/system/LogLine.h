#pragma once

#include <QString>
#include <utility>
#include <vector>

namespace quillfern {

/// Writes one line to the system log (Qt's logging, category "quillfern", which reaches the journal or the
/// standard error stream). May be called from any thread. Never shown in a window.
void logLine(const QString& line);

/// Like logLine, for successful events that an administrator should know of.
void logNotice(const QString& line);

/// `pattern` with its "%@" replaced by `reason`, as one line.
[[nodiscard]] QString failureLine(const char* pattern, const QString& reason);

/// Lines for the system log that are written later, or never.
class HeldLogLines
{
  public:
    /// Writes the lines, in their order, and forgets them.
    void write();

  private:
    friend class LogHold;
    std::vector<std::pair<QString, bool>> lines_; ///< with whether the line is a notice
};

/// While an object of this class lives, the lines that its thread writes to the system log are kept, so that
/// work whose result may be thrown away leaves no line behind. Not nested.
class LogHold
{
  public:
    /// `lines` must outlive this object.
    explicit LogHold(HeldLogLines& lines);
    ~LogHold();
    LogHold(const LogHold&) = delete;
    LogHold& operator=(const LogHold&) = delete;

    /// Keeps a line when this thread's lines are kept; false when they are not.
    [[nodiscard]] static bool keeps(const QString& line, bool isNotice);
};

} // namespace quillfern
