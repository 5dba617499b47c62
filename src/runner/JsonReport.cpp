#include "runner/JsonReport.h"

#include "platform/system/NativePath.h"

#include <QJsonArray>
#include <QJsonDocument>

namespace quillfern {

namespace {

QString key(const char* name)
{
    return QString::fromLatin1(name);
}

/// A path as a string of its own. A string of JSON cannot hold bytes that are not UTF-8: such a path has the
/// replacement character in them, and its bytes in Base64 under the name with "Base64" appended.
void addPath(QJsonObject& object, const char* name, const FilePath& path)
{
    object.insert(key(name), readableName(path.text()));
    if (!QByteArrayView(path.bytes()).isValidUtf8())
        object.insert(key(name) + QStringLiteral("Base64"), QString::fromLatin1(path.bytes().toBase64()));
}

void addNumbers(QJsonObject& object, const char* name, const std::optional<NumbersUsed>& numbers)
{
    if (!numbers) return;
    object.insert(key(name), QJsonObject{{key("first"), static_cast<qint64>(numbers->first)},
                                         {key("last"), static_cast<qint64>(numbers->last)}});
}

QString sentence(const QString& text)
{
    return QString(text).replace(QStringLiteral("\r\n"), QStringLiteral(" "));
}

} // namespace

void JsonReport::write(const QJsonObject& object)
{
    out_ << QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Compact)) << '\n';
    out_.flush();
}

void JsonReport::remark(const Remark& remark)
{
    write({{key("kind"), key("finding")},
           {key("id"), key(remark.id)},
           {key("severity"), key("note")},
           {key("text"), readableName(remark.text)}});
}

void JsonReport::finding(const JobFinding& finding)
{
    QJsonArray files;
    for (const FilePath& path : finding.files) {
        QJsonObject file;
        addPath(file, "path", path);
        files.append(file);
    }
    QJsonArray options;
    for (const Remedy remedy : finding.remedies)
        if (const char* option = remedyOption(remedy)) options.append(QStringLiteral("--") + key(option));
    write({{key("kind"), key("finding")},
           {key("id"), key(findingId(finding.kind))},
           {key("severity"), key(severityId(finding.severity))},
           {key("text"), readableName(finding.sentence.logged)},
           {key("files"), files},
           {key("settledBy"), options}});
}

void JsonReport::listWritten(const FilePath& path, const FileTotals& totals)
{
    QJsonObject list{{key("kind"), key("list")},
                     {key("files"), static_cast<qint64>(totals.files)},
                     {key("pdfPages"), static_cast<qint64>(totals.pdfPages)},
                     {key("tiffPages"), static_cast<qint64>(totals.tiffPages)},
                     {key("otherPages"), static_cast<qint64>(totals.otherPages)}};
    addPath(list, "path", path);
    write(list);
}

void JsonReport::fileDone(std::int64_t index, const LogFiles& file)
{
    const FileOutcome& outcome = file.outcome;
    const bool isSound = outcome.status == FileStatus::Created || outcome.status == FileStatus::Skipped;
    if (isQuiet_ && isSound && !outcome.isWarning()) return;
    QJsonObject line{{key("kind"), key("file")},
                     {key("index"), static_cast<qint64>(index)},
                     {key("status"), key(statusId(outcome.status))},
                     {key("sourcePages"), file.pages}};
    addPath(line, "source", file.source);
    if (outcome.status == FileStatus::Created) {
        addPath(line, "copy", FilePath::fromText(file.targetPath).child(file.filename));
        line.insert(key("copyPages"), outcome.pages);
        line.insert(key("isIncomplete"), outcome.isIncomplete);
        line.insert(key("breaksSignature"), outcome.breaksSignature);
        line.insert(key("replacesCopy"), outcome.replacesCopy);
    }
    addNumbers(line, "numbers", outcome.numbers);
    for (const auto& [name, hash] :
         {std::pair("sourceSha256", outcome.sourceSha256), std::pair("copySha256", outcome.copySha256)})
        if (!hash.isEmpty()) line.insert(key(name), QString::fromLatin1(hash));
    addNumbers(line, "lostNumbers", outcome.lostNumbers);
    if (outcome.remark) line.insert(key("remark"), readableName(outcome.remark->logged));
    write(line);
}

void JsonReport::jobDone(const JobSummary& job)
{
    QJsonArray warnings;
    for (const Reason& warning : job.warnings)
        warnings.append(readableName(warning.logged));
    result_ = {{key("message"), sentence(job.message)},
               {key("seconds"), job.seconds},
               {key("files"), static_cast<qint64>(job.files)},
               {key("filesProcessed"), static_cast<qint64>(job.filesProcessed)},
               {key("filesCreated"), static_cast<qint64>(job.filesCreated)},
               {key("pages"), static_cast<qint64>(job.pages)},
               {key("warnings"), warnings}};
    if (job.isLogged) addPath(result_, "log", job.log);
    if (job.index) addPath(result_, "index", *job.index);
}

void JsonReport::ended(int exitStatus, const std::optional<QString>& problem)
{
    result_.insert(key("kind"), key("result"));
    result_.insert(key("exitStatus"), exitStatus);
    if (problem) result_.insert(key("problem"), readableName(sentence(*problem)));
    write(result_);
}

} // namespace quillfern
