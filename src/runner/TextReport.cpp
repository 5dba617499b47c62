#include "runner/TextReport.h"

#include "platform/system/NativePath.h"
#include "runner/Runner.h"

#include <algorithm>

namespace quillfern {

void TextReport::remark(const Remark& remark)
{
    err_ << printable(remark.text) << '\n';
    err_.flush();
}

void TextReport::finding(const JobFinding& finding)
{
    constexpr std::size_t mostFiles = 5; // --json names all of them
    const QString severity = QString::fromLatin1(severityId(finding.severity));
    err_ << severity.left(1).toUpper() << severity.mid(1) << ": " << printable(finding.sentence.shown);
    QStringList options;
    for (const Remedy remedy : finding.remedies)
        if (const char* option = remedyOption(remedy))
            options.append(QStringLiteral("--") + QString::fromLatin1(option));
    if (!options.isEmpty()) err_ << " (" << options.join(QStringLiteral(", ")) << ')';
    err_ << '\n';
    for (std::size_t i = 0; i < std::min(mostFiles, finding.files.size()); ++i)
        err_ << "    " << finding.files[i].readable() << '\n';
    if (finding.files.size() > mostFiles) err_ << "    …\n";
    err_.flush();
}

void TextReport::listWritten(const FilePath& path, const FileTotals& totals)
{
    if (isQuiet_) return;
    out_ << totalLabelText(totals) << "\nList: " << path.readable() << '\n';
    out_.flush();
}

void TextReport::fileDone(std::int64_t, const LogFiles& file)
{
    const FilePath path = FilePath::fromText(file.targetPath).child(file.filename);
    const FileOutcome& outcome = file.outcome;
    const bool isSound = outcome.status == FileStatus::Created || outcome.status == FileStatus::Skipped;
    if (isQuiet_ && isSound && !outcome.isWarning()) return;
    QTextStream& stream = isQuiet_ ? err_ : out_;
    const QString word = outcome.status == FileStatus::CreatedNothing ? QStringLiteral("No Output")
                         : outcome.status == FileStatus::Cancelled    ? QStringLiteral("Cancelled")
                                                                      : statusWord(outcome);
    stream << printable(word).leftJustified(10) << ' ' << QString::number(file.pages).rightJustified(6)
           << (file.pages == 1 ? " page   " : " pages  ") << path.readable();
    if (outcome.remark && outcome.status != FileStatus::Refused) {
        stream << "  (";
        if (outcome.status != FileStatus::Created) stream << file.source.readable() << ": ";
        stream << printable(outcome.remark->shown) << ')';
    }
    stream << '\n';
    stream.flush();
}

void TextReport::jobDone(const JobSummary& job)
{
    if (!isQuiet_) {
        out_ << QString(job.message).replace(QStringLiteral("\r\n"), QStringLiteral(" ")) << '\n';
        if (!job.timeTaken.isEmpty()) out_ << "Time: " << job.timeTaken << '\n';
        if (job.index) out_ << "Index: " << job.index->readable() << '\n';
        if (job.isLogged) out_ << "Log: " << job.log.readable() << '\n';
        out_.flush();
    }
    if (!job.isLogged) err_ << "The log could not be written: " << job.log.readable() << '\n';
    for (const Reason& warning : job.warnings)
        err_ << "Warning: " << warning.shown << '\n';
    err_.flush();
}

void TextReport::ended(int exitStatus, const std::optional<QString>& problem)
{
    if (!problem) return;
    err_ << "quillfern-run: " << printable(*problem) << '\n';
    if (exitStatus == Runner::CommandNotFollowed) err_ << "Try quillfern-run --help.\n";
    err_.flush();
}

} // namespace quillfern
