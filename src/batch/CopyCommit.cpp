#include "batch/CopyCommit.h"

#include "platform/store/FolderBelow.h"
#include "platform/system/Failure.h"

namespace quillfern {

std::optional<FilePath> commitCopy(store::AtomicFile& file, const FilePath& outputFolder,
                                   const OutputNames& names, const CopyName& copy, ExistingCopies existing)
{
    const store::FolderBelow folder(outputFolder, copy.folders);
    if (file.commitInto(folder, copy.name, existing == ExistingCopies::Replace))
        return copy.below(outputFolder);
    if (existing != ExistingCopies::Number) return std::nullopt;
    constexpr int most = 100'000;
    for (int number = 2; number < most; ++number) {
        const CopyName next = names.numbered(copy, number);
        if (file.commitInto(folder, next.name, false)) return next.below(outputFolder);
    }
    throw Failure({QT_TRANSLATE_NOOP("quillfern::Failure", "There are too many copies named like %1."),
                   {copy.below(outputFolder).readable()}});
}

} // namespace quillfern
