#pragma once

#include <QString>
#include <QTextStream>
#include <cstdint>

namespace quillfern {

/// The last line of a terminal, written over and over while a program works. Nothing for a stream that is no
/// terminal.
class ProgressLine
{
  public:
    /// The stream is borrowed.
    ProgressLine(QTextStream& err, bool isShown) : err_(err), isShown_(isShown) {}

    /// Shows a text in place of the one before, cut to the width of the terminal.
    void show(const QString& text);
    /// Takes the text away; before anything else is printed on the terminal.
    void clear();
    void hide() { isShown_ = false; } ///< from now on

  private:
    QTextStream& err_;
    bool isShown_;
    bool isThere_ = false;
};

/// "about 4 min left", when `done` of `total` took so long. Empty in the first seconds, which say little, and
/// when nothing is left.
[[nodiscard]] QString remainingTime(std::int64_t milliseconds, std::int64_t done, std::int64_t total);

} // namespace quillfern
