#pragma once

#include "runner/Report.h"

#include <QJsonObject>
#include <QTextStream>

namespace quillfern {

/// One JSON object a line on the standard output, described in docs/runner-json.md. The last line is always
/// the one of the kind "result".
class JsonReport final : public Report
{
  public:
    /// The stream is borrowed. When `isQuiet`, files without a fault are left out.
    JsonReport(QTextStream& out, bool isQuiet) : out_(out), isQuiet_(isQuiet) {}

    void remark(const Remark& remark) override;
    void finding(const JobFinding& finding) override;
    void listWritten(const FilePath& path, const FileTotals& totals) override;
    void fileDone(std::int64_t index, const LogFiles& file) override;
    void jobDone(const JobSummary& job) override;
    void ended(int exitStatus, const std::optional<QString>& problem) override;

  private:
    void write(const QJsonObject& object);

    QTextStream& out_;
    bool isQuiet_;
    QJsonObject result_; ///< what is known of the job by now
};

} // namespace quillfern
