#include "batch/CopyPlacement.h"

#include "batch/CopyCommit.h"
#include "platform/system/FileFacts.h"

namespace quillfern {

namespace {

Reason takenBy(const FilePath& other)
{
    return {QT_TRANSLATE_NOOP("quillfern::Failure", "No copy was made: the copy of %1 has its name."),
            {other.readable()}};
}

} // namespace

std::vector<Collision> CopyPlacement::collisions(const std::function<bool()>& goOn) const
{
    if (rules().mayReplace) return findCollisions(job_.outputFiles, goOn);
    std::vector<Collision> collisions(job_.outputFiles.size());
    const bool isSkipping = job_.configuration.options.existing == ExistingCopies::Skip;
    if (!isSkipping || !job_.names || job_.names->dependOnNumbers()) return collisions;
    // Known before the first copy is made, or it would depend on the order of the work which of two files
    // with one name is stamped.
    for (std::size_t i = 0; i < collisions.size() && goOn(); ++i)
        collisions[i].isCopyThere = isNameTaken(job_.outputFiles[i].filename());
    return collisions;
}

CopyRules CopyPlacement::rules() const
{
    return {job_.configuration.options.existing == ExistingCopies::Replace,
            job_.names ? job_.outputFolder : FilePath()};
}

FileOutcome CopyPlacement::skipped()
{
    return FileOutcome::without(
        FileStatus::Skipped,
        QT_TRANSLATE_NOOP("quillfern::Failure", "A copy was there before the job, and was left as it is."));
}

FileOutcome CopyPlacement::commit(StampedDocument& document, std::size_t index, FilePath& target,
                                  const std::stop_token& stop, const std::function<bool()>& makeRoom) const
{
    const bool isTargetOfThisJob = written_.contains(target);
    if (!job_.names || !document.copy) return document.commit(isTargetOfThisJob, stop, {}, makeRoom);
    const FilePath planned = target;
    const CopyName name = job_.names->of(index, document.source, document.numbers);
    bool isLeft = false;
    const CopyMove moveToName = [&](store::AtomicFile& file) {
        if (document.place->isInPlace() && name.below(job_.outputFolder) == planned) {
            file.commit();
            return;
        }
        target = FilePath();
        move(file, planned, name, target);
        isLeft = target.isEmpty();
    };
    FileOutcome outcome = document.commit(isTargetOfThisJob, stop, moveToName, makeRoom);
    if (target.isEmpty()) target = name.below(job_.outputFolder);
    if (!isLeft || outcome.status != FileStatus::Created) return outcome;
    outcome = skipped();
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
    if (!isNameTaken(target)) return;
    if (!inputs_) inputs_.emplace(job_.outputFiles, [] { return true; });
    const FilePath* input = inputs_->inputAt(target);
    if (!input) input = inputs_->inputBehind(target);
    if (input)
        throw Failure(
            {QT_TRANSLATE_NOOP("quillfern::Failure",
                               "No copy was made: it would overwrite another file of the list, %1."),
             {input->readable()}});
}

} // namespace quillfern
