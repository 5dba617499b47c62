#include "batch/OutputNames.h"

#include "platform/system/FileFacts.h"
#include "platform/system/NativePath.h"

#include <QRegularExpression>
#include <QTextBoundaryFinder>
#include <algorithm>

namespace quillfern {

namespace {

const QString tif = QStringLiteral("tif");

const QRegularExpression& wordInBraces()
{
    static const QRegularExpression word(QStringLiteral("\\{([^{}]*)\\}"));
    return word;
}

QList<QByteArray> namesOf(const FilePath& folder)
{
    QList<QByteArray> names;
    for (const QByteArray& name : folder.bytes().split('/'))
        if (!name.isEmpty()) names.append(name);
    return names;
}

/// The names that the folders of all files begin with.
QList<QByteArray> commonNames(const std::vector<FileItem>& sources)
{
    if (sources.empty()) return {};
    QList<QByteArray> common = namesOf(sources.front().filePath().parent());
    for (const FileItem& source : sources) {
        const QList<QByteArray> names = namesOf(source.filePath().parent());
        const auto [end, other] = std::mismatch(common.begin(), common.end(), names.begin(), names.end());
        common.erase(end, common.end());
    }
    return common;
}

/// With "_" for what Linux, Windows or a share refuses in a name.
QString allowed(QString name)
{
    for (QChar& c : name)
        if (c.unicode() < 0x20 || c.unicode() == 0x7F || QStringLiteral("/\\:*?\"<>|").contains(c)) c = u'_';
    return name;
}

/// The longest begin of whole characters, as people count them, that has at most so many bytes.
QString cut(const QString& text, qsizetype bytes)
{
    if (nativePath(text).size() <= bytes) return text;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    qsizetype end = 0;
    for (qsizetype next = finder.toNextBoundary(); next > 0; next = finder.toNextBoundary()) {
        if (nativePath(text.left(next)).size() > bytes) break;
        end = next;
    }
    return text.left(end);
}

} // namespace

FilePath CopyName::below(const FilePath& folder) const
{
    return folder.child((folders + QStringList{name}).join(u'/'));
}

OutputNames::OutputNames(const JobConfiguration& job, const FilePath& outputFolder,
                         const std::vector<FileItem>& sources, const QDate& date)
    : options_(job.options), numbers_(job.stamps),
      commonFolder_(options_.keepFolders ? commonNames(sources) : QList<QByteArray>()),
      longestName_(longestName(outputFolder)),
      digitsOfIndex_(static_cast<int>(QString::number(sources.size()).size())),
      date_(date.toString(Qt::ISODate)),
      dependOnNumbers_(options_.namePattern.contains(QLatin1String("{first}")) ||
                       options_.namePattern.contains(QLatin1String("{last}")))
{
}

std::optional<QString> OutputNames::unknownWord(const QString& pattern)
{
    static const QStringList known = {QStringLiteral("name"), QStringLiteral("first"), QStringLiteral("last"),
                                      QStringLiteral("index"), QStringLiteral("date")};
    for (const auto& match : wordInBraces().globalMatch(pattern))
        if (!known.contains(match.captured(1))) return match.captured();
    return std::nullopt;
}

QStringList OutputNames::foldersOf(const FilePath& source) const
{
    QStringList folders;
    if (!options_.keepFolders) return folders;
    for (const QByteArray& name : namesOf(source.parent()).mid(commonFolder_.size()))
        // A ".." that the system could not resolve would lead out of the output folder.
        folders.append(name == ".." ? QStringLiteral("_") : pathText(name));
    return folders;
}

QString OutputNames::stemOf(std::size_t index, const FilePath& source,
                            const std::optional<NumbersUsed>& numbers) const
{
    QString stem;
    qsizetype from = 0;
    const QString& pattern = options_.namePattern;
    for (const auto& match : wordInBraces().globalMatch(pattern)) {
        stem += QStringView(pattern).mid(from, match.capturedStart() - from);
        from = match.capturedEnd();
        const QString word = match.captured(1);
        if (word == QLatin1String("name"))
            stem += source.stem();
        else if (word == QLatin1String("first"))
            stem += numbers_.first(numbers);
        else if (word == QLatin1String("last"))
            stem += numbers_.last(numbers);
        else if (word == QLatin1String("index"))
            stem += QString::number(index + 1).rightJustified(digitsOfIndex_, u'0');
        else if (word == QLatin1String("date"))
            stem += date_;
        else
            stem += match.captured();
    }
    stem += QStringView(pattern).mid(from);
    stem = allowed(stem).trimmed();
    return stem.isEmpty() ? source.stem() : stem;
}

QString OutputNames::fitting(const QString& stem, const QString& ending) const
{
    return cut(stem, longestName_ - nativePath(ending).size()) + ending;
}

CopyName OutputNames::of(std::size_t index, const FilePath& source,
                         const std::optional<NumbersUsed>& numbers) const
{
    const QString extension = source.extension();
    const QString type = extension.toLower();
    const bool becomesTif =
        options_.tifNames && type != QLatin1String("pdf") && type != tif && type != QLatin1String("tiff");
    if (options_.namePattern.isEmpty() && !becomesTif) return {foldersOf(source), source.name()};
    const QString stem = options_.namePattern.isEmpty() ? source.stem() : stemOf(index, source, numbers);
    const QString ending = becomesTif ? tif : extension;
    return {foldersOf(source), fitting(stem, ending.isEmpty() ? ending : u'.' + ending)};
}

CopyName OutputNames::numbered(const CopyName& copy, int number) const
{
    const QString extension = FilePath::extensionOf(copy.name);
    const QString ending = extension.isEmpty() ? extension : u'.' + extension;
    const QString counter = QStringLiteral(" (%1)").arg(number);
    return {copy.folders, fitting(copy.name.chopped(ending.size()), counter + ending)};
}

} // namespace quillfern
