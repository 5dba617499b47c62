#pragma once

#include "runner/Report.h"

#include <QTextStream>

namespace quillfern {

/// One line a file on the standard output, problems on the standard error stream.
class TextReport final : public Report
{
  public:
    /// Both streams are borrowed. When `isQuiet`, only what went wrong is told, on `err`.
    TextReport(QTextStream& out, QTextStream& err, bool isQuiet) : out_(out), err_(err), isQuiet_(isQuiet) {}

    void remark(const Remark& remark) override;
    void finding(const JobFinding& finding) override;
    void listWritten(const FilePath& path, const FileTotals& totals) override;
    void fileDone(std::int64_t index, const LogFiles& file) override;
    void jobDone(const JobSummary& job) override;
    void ended(int exitStatus, const std::optional<QString>& problem) override;

  private:
    QTextStream& out_;
    QTextStream& err_;
    bool isQuiet_;
};

} // namespace quillfern
