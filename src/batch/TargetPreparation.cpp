#include "batch/TargetPreparation.h"

#include "platform/store/AtomicFile.h"
#include "platform/system/FileIdentity.h"

#include <QFile>
#include <QFileInfo>

namespace quillfern {

QString prepareTarget(const QString& source, const QString& target, bool isBackupFile)
{
    if (!isSameFile(source, target)) {
        QFile::remove(target);
        return target;
    }
    if (isBackupFile) copyFileAtomically(source, source + QStringLiteral(".bak"));
    return QFileInfo(target).canonicalFilePath();
}

} // namespace quillfern
