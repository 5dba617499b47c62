#include "batch/Job.h"

#include "platform/system/Failure.h"
#include "platform/system/FileAccess.h"
#include "platform/system/FileFacts.h"

namespace quillfern {

void requireOutputFolder(const std::optional<QString>& path)
{
    if (!path || path->isEmpty())
        throw Failure(QT_TRANSLATE_NOOP("quillfern::Failure", "Please select output folder!"));
    const FilePath folder = FilePath::fromText(*path);
    if (fileKind(folder) != FileKind::Folder) // a file at this path cannot hold the copies
        throw Failure(QT_TRANSLATE_NOOP("quillfern::Failure",
                                        "Output folder missing!\r\nPlease select valid output folder."));
    if (!mayWriteInto(folder))
        throw Failure(QT_TRANSLATE_NOOP(
            "quillfern::Failure", "Output folder is non-writable!\r\nPlease select valid output folder."));
}

Job planJob(const std::vector<FileItem>& files, const Settings& settings)
{
    Job job;
    job.configuration = settings.number->configuration();
    job.outputFolder = FilePath::fromText(settings.outputFolderPath.value_or(QString()));
    job.isOpenFolderAfterConversion = settings.isOpenFolderAfterConversion;
    for (const FileItem& item : files) {
        OutputFile output;
        output.initWithData(job.outputFolder.child(item.name()), std::vector{item});
        job.outputFiles.push_back(std::move(output));
        job.totalPages += item.pages();
    }
    return job;
}

} // namespace quillfern
