#include "batch/JobIndex.h"

#include "batch/StampedNumbers.h"
#include "platform/store/AtomicFile.h"
#include "platform/store/KeptFile.h"
#include "platform/system/Failure.h"
#include "platform/system/FileFacts.h"
#include "platform/system/FileIdentity.h"

#include <QUrl>
#include <algorithm>

namespace quillfern {

namespace {

/// A field in quotes where a reader would take it for more than one.
QByteArray quoted(const QString& text)
{
    const auto needsQuotes = [](QChar c) { return c == u',' || c == u'"' || c == u'\r' || c == u'\n'; };
    if (std::none_of(text.begin(), text.end(), needsQuotes)) return text.toUtf8();
    return '"' + QString(text).replace(u'"', QStringLiteral("\"\"")).toUtf8() + '"';
}

/// A path is absolute and so begins with "/", which no spreadsheet takes for a formula. One that is not UTF-8
/// becomes a URL, which keeps the bytes.
QString pathField(const FilePath& path)
{
    if (QByteArrayView(path.bytes()).isValidUtf8()) return path.text();
    return QString::fromLatin1(path.url().toEncoded());
}

/// A text of ours in which other people's names may stand. A spreadsheet would run what begins like a formula
/// and is no number.
QString textField(const QString& text)
{
    bool isNumber = false;
    static_cast<void>(text.toLongLong(&isNumber));
    const bool isFormula = !text.isEmpty() && QStringLiteral("=+-@\t\r").contains(text.front());
    return isFormula && !isNumber ? u'\'' + text : text;
}

QByteArray line(const QStringList& fields)
{
    QList<QByteArray> bytes;
    for (const QString& field : fields)
        bytes.append(quoted(field));
    return bytes.join(',') + "\r\n";
}

} // namespace

QByteArray jobIndex(const Job& job, const std::vector<LogFiles>& files)
{
    const StampedNumbers numbers(job.configuration.stamps);
    const JobPart part = partOf(job);
    QByteArray csv = part.number > 1
                         ? ""
                         : "order,source,copy,pages,first,last,outcome,remark,source_sha256,copy_sha256\r\n";
    for (std::size_t i = part.first; i < part.end; ++i) {
        const std::vector<FileItem>& sources = job.outputFiles[i].fileItems();
        QStringList fields = {QString::number(i + 1),
                              sources.empty() ? QString() : pathField(sources.back().filePath())};
        if (i - part.first >= files.size()) {
            fields += {{}, {}, {}, {}, QStringLiteral("not-begun"), {}, {}, {}};
        } else {
            const LogFiles& file = files[i - part.first];
            const FileOutcome& outcome = file.outcome;
            const bool isCreated = outcome.status == FileStatus::Created;
            const bool hasCopy = isCreated || outcome.status == FileStatus::Skipped;
            const FilePath copy = FilePath::fromText(file.targetPath).child(file.filename);
            fields += {hasCopy ? pathField(copy) : QString(),
                       isCreated ? QString::number(outcome.pages) : QString(),
                       isCreated ? textField(numbers.first(outcome.numbers)) : QString(),
                       isCreated ? textField(numbers.last(outcome.numbers)) : QString(),
                       QString::fromLatin1(statusId(outcome.status)),
                       outcome.remark ? textField(outcome.remark->logged) : QString(),
                       QString::fromLatin1(outcome.sourceSha256),
                       QString::fromLatin1(outcome.copySha256)};
        }
        csv += line(fields);
    }
    return csv;
}

std::optional<FilePath> indexPath(const Job& job)
{
    const JobOptions& options = job.configuration.options;
    if (!options.index) return std::nullopt;
    return options.indexFile.isEmpty() ? job.outputFolder.child(QStringLiteral("index.csv"))
                                       : options.indexFile;
}

namespace {

/// Throws Failure when the index would take the place of a copy that the job has made.
void requireNoCopy(const FilePath& path, const std::vector<LogFiles>& files)
{
    if (!isNameTaken(path)) return;
    const auto place = filePlace(path);
    for (const LogFiles& file : files) {
        const FilePath copy = FilePath::fromText(file.targetPath).child(file.filename);
        if (file.outcome.status == FileStatus::Created && filePlace(copy) == place)
            throw Failure({QT_TRANSLATE_NOOP("quillfern::Failure", "%1 is a copy that this job has made."),
                           {path.readable()}});
    }
}

} // namespace

void writeIndex(const Job& job, const std::vector<LogFiles>& files)
{
    const auto path = indexPath(job);
    if (!path) return;
    const QByteArray csv = jobIndex(job, files);
    if (job.configuration.options.indexFile.isEmpty()) {
        static_cast<void>(store::writeKeepingEarlier(*path, csv));
        return;
    }
    requireNoCopy(*path, files);
    store::AtomicFile::writeWhole(*path, csv);
}

} // namespace quillfern
