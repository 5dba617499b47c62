#include "batch/Job.h"

#include "platform/system/Failure.h"
#include "platform/system/FileFacts.h"
#include "platform/system/NativePath.h"

#include <QDir>
#include <unistd.h>

namespace quillfern {

void requireOutputFolder(const std::optional<QString>& path)
{
    if (!path || path->isEmpty())
        throw Failure(QT_TRANSLATE_NOOP("quillfern::Failure", "Please select output folder!"));
    if (fileKind(*path) != FileKind::Folder) // what else is there cannot hold the copies
        throw Failure(QT_TRANSLATE_NOOP("quillfern::Failure",
                                        "Output folder missing!\r\nPlease select valid output folder."));
    // access() asks the kernel, which also knows of read-only file systems.
    if (::access(nativePath(*path).constData(), W_OK) != 0)
        throw Failure(QT_TRANSLATE_NOOP(
            "quillfern::Failure", "Output folder is non-writable!\r\nPlease select valid output folder."));
}

Job planJob(const std::vector<FileItem>& files, const Settings& settings)
{
    Job job;
    job.configuration = settings.number->configuration();
    job.outputFolder = settings.outputFolderPath.value_or(QString());
    job.isOpenFolderAfterConversion = settings.isOpenFolderAfterConversion;
    const QDir folder(job.outputFolder);
    for (const FileItem& item : files) {
        OutputFile output;
        output.initWithData(folder.filePath(item.name()), std::vector{item});
        job.outputFiles.push_back(std::move(output));
        job.totalPages += item.pages();
    }
    return job;
}

} // namespace quillfern
