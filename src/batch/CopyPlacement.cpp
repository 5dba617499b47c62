#include "batch/CopyPlacement.h"

#include "batch/CopyCommit.h"
#include "platform/system/FileFacts.h"
#include "platform/system/FileIdentity.h"
#include "platform/system/LogLine.h"

namespace quillfern {

namespace {

FileOutcome leftAsItIs()
{
    return FileOutcome::without(
        FileStatus::Skipped,
        QT_TRANSLATE_NOOP("quillfern::Failure", "A copy was there before the job, and was left as it is."));
}

Reason takenBy(const FilePath& other)
{
    return {QT_TRANSLATE_NOOP("quillfern::Failure", "No copy was made: the copy of %1 has its name."),
            {other.readable()}};
}

} // namespace

std::vector<Collision> CopyPlacement::collisions(const std::function<bool()>& goOn) const
{
    if (rules().mayReplace) return findCollisions(job_.outputFiles, goOn);
    return std::vector<Collision>(job_.outputFiles.size());
}

CopyRules CopyPlacement::rules() const
{
    return {job_.configuration.options.existing == ExistingCopies::Replace,
            job_.names ? job_.outputFolder : FilePath()};
}

std::optional<FileOutcome> CopyPlacement::skipped(const FilePath& target) const
{
    const ExistingCopies existing = job_.configuration.options.existing;
    if (existing == ExistingCopies::Replace || existing == ExistingCopies::Number) return std::nullopt;
    if (!job_.names || job_.names->dependOnNumbers() || !isNameTaken(target)) return std::nullopt;
    return leftAsItIs();
}

FileOutcome CopyPlacement::confirmed(FileOutcome outcome, const FilePath& target) const
{
    const auto earlier = written_.constFind(target);
    if (outcome.status != FileStatus::Skipped || earlier == written_.constEnd()) return outcome;
    const Reason reason = takenBy(*earlier);
    logLine(QStringLiteral("%1: %2").arg(target.readable(), reason.logged));
    return FileOutcome::without(FileStatus::Failed, reason);
}

FileOutcome CopyPlacement::commit(StampedDocument& document, std::size_t index, FilePath& target,
                                  const std::stop_token& stop) const
{
    const bool isTargetOfThisJob = written_.contains(target);
    if (!job_.names || !document.copy) return document.commit(isTargetOfThisJob, stop);
    const FilePath planned = target;
    const CopyName name = job_.names->of(index, document.source, document.numbers);
    bool isLeft = false;
    FileOutcome outcome = document.commit(isTargetOfThisJob, stop, [&](store::AtomicFile& file) {
        if (document.place->isInPlace() && name.below(job_.outputFolder) == planned) {
            file.commit();
            return;
        }
        target = FilePath();
        move(file, planned, name, target);
        isLeft = target.isEmpty();
    });
    if (target.isEmpty()) target = name.below(job_.outputFolder);
    if (!isLeft || outcome.status != FileStatus::Created) return outcome;
    outcome = leftAsItIs();
    outcome.numbers = document.numbers;
    return outcome;
}

void CopyPlacement::move(store::AtomicFile& file, const FilePath& planned, const CopyName& name,
                         FilePath& target) const
{
    const FilePath wanted = name.below(job_.outputFolder);
    // Only the planned names were compared with the inputs when the job began.
    if (rules().mayReplace && wanted != planned) requireNoInput(wanted);
    const auto path =
        commitCopy(file, job_.outputFolder, *job_.names, name, job_.configuration.options.existing);
    if (path)
        target = *path;
    else if (const auto earlier = written_.constFind(wanted); earlier != written_.constEnd())
        throw Failure(takenBy(*earlier));
}

void CopyPlacement::requireNoInput(const FilePath& target) const
{
    const auto place = filePlace(target);
    if (!place) return; // its folder is not there yet
    for (const OutputFile& output : job_.outputFiles)
        for (const FileItem& item : output.fileItems())
            if (place == filePlace(item.filePath()) || isSameFile(target, item.filePath()))
                throw Failure(
                    {QT_TRANSLATE_NOOP("quillfern::Failure",
                                       "No copy was made: it would overwrite another file of the list, %1."),
                     {item.filePath().readable()}});
}

} // namespace quillfern
