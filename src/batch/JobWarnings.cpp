#include "batch/JobWarnings.h"

#include "platform/system/NativePath.h"

#include <functional>

namespace quillfern {

namespace {

constexpr qsizetype mostNames = 5; ///< the results and the log name all of them

/// `one` has the name in place of its "%1"; `several` has their number in place of "%1" and the names in
/// place of "%2".
void addCount(const std::vector<LogFiles>& files, const std::function<bool(const FileOutcome&)>& counts,
              const char* one, const char* several, std::vector<Reason>& warnings)
{
    QStringList names;
    qsizetype count = 0;
    for (const LogFiles& file : files) {
        if (!counts(file.outcome)) continue;
        if (++count <= mostNames) names.append(printable(readableName(file.filename)));
    }
    if (count == 0) return;
    if (count > mostNames) names.append(QStringLiteral("…"));
    const QString list = names.join(QStringLiteral(", "));
    warnings.push_back(count == 1 ? Reason(one, {list}) : Reason(several, {QString::number(count), list}));
}

} // namespace

Reason lostNumbersText(const NumbersUsed& numbers)
{
    if (numbers.first == numbers.last)
        return {QT_TRANSLATE_NOOP("quillfern::Failure", "The number %1 appears in no file."),
                {QString::number(numbers.first)}};
    return {QT_TRANSLATE_NOOP("quillfern::Failure", "The numbers %1 to %2 appear in no file."),
            {QString::number(numbers.first), QString::number(numbers.last)}};
}

std::vector<Reason> jobWarnings(const std::vector<LogFiles>& files)
{
    std::vector<Reason> warnings;
    addCount(
        files, [](const FileOutcome& outcome) { return outcome.status == FileStatus::CreatedNothing; },
        QT_TRANSLATE_NOOP("quillfern::Failure", "1 file gave no output: %1"),
        QT_TRANSLATE_NOOP("quillfern::Failure", "%1 files gave no output: %2"), warnings);
    addCount(
        files, [](const FileOutcome& outcome) { return outcome.replacesCopy; },
        QT_TRANSLATE_NOOP("quillfern::Failure", "1 file replaced the copy of another file of its name: %1"),
        QT_TRANSLATE_NOOP("quillfern::Failure",
                          "%1 files replaced the copies of other files of their names: %2"),
        warnings);
    addCount(
        files, [](const FileOutcome& outcome) { return outcome.isIncomplete; },
        QT_TRANSLATE_NOOP("quillfern::Failure",
                          "1 file is damaged, and parts of it are missing in its copy: %1"),
        QT_TRANSLATE_NOOP("quillfern::Failure",
                          "%1 files are damaged, and parts of them are missing in their copies: %2"),
        warnings);
    addCount(
        files, [](const FileOutcome& outcome) { return outcome.breaksSignature; },
        QT_TRANSLATE_NOOP("quillfern::Failure", "The digital signature of 1 file no longer holds: %1"),
        QT_TRANSLATE_NOOP("quillfern::Failure", "The digital signatures of %1 files no longer hold: %2"),
        warnings);
    qsizetype ranges = 0;
    for (const LogFiles& file : files)
        if (file.outcome.lostNumbers && ++ranges <= mostNames)
            warnings.push_back(lostNumbersText(*file.outcome.lostNumbers));
    if (ranges > mostNames)
        warnings.push_back(
            Reason(QT_TRANSLATE_NOOP("quillfern::Failure", "The numbers of %1 more files appear in no file."),
                   {QString::number(ranges - mostNames)}));
    return warnings;
}

} // namespace quillfern
