#include "batch/TargetPreparation.h"

#include "platform/store/AtomicFile.h"
#include "platform/system/FileAccess.h"
#include "platform/system/FileIdentity.h"

namespace quillfern {

FilePath prepareTarget(const FilePath& source, const FilePath& target, bool isBackupFile)
{
    if (!isSameFile(source, target)) {
        removeFile(target);
        return target;
    }
    if (isBackupFile)
        store::copyFileAtomically(source, source.parent().child(source.name() + QStringLiteral(".bak")));
    return resolvedPath(target);
}

} // namespace quillfern
