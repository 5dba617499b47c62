#include "batch/TargetPreparation.h"

#include "platform/store/AtomicFile.h"
#include "platform/system/FileAccess.h"
#include "platform/system/FileIdentity.h"

namespace quillfern {

QString prepareTarget(const QString& source, const QString& target, bool isBackupFile)
{
    if (!isSameFile(source, target)) {
        removeFile(target);
        return target;
    }
    if (isBackupFile) copyFileAtomically(source, source + QStringLiteral(".bak"));
    return resolvedPath(target);
}

} // namespace quillfern
