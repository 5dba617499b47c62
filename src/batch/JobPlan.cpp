#include "batch/JobPlan.h"

#include "platform/system/FileAccess.h"
#include "platform/system/FileFacts.h"

#include <QCoreApplication>

namespace quillfern {

std::optional<QString> outputFolderProblem(const std::optional<QString>& path)
{
    if (!path || path->isEmpty())
        return QCoreApplication::translate("quillfern::JobPlan", "Please select output folder!");
    const FilePath folder = FilePath::fromText(*path);
    if (fileKind(folder) != FileKind::Folder) // what else is there cannot hold the copies
        return QCoreApplication::translate("quillfern::JobPlan",
                                           "Output folder missing!\r\nPlease select valid output folder.");
    if (!mayWriteInto(folder))
        return QCoreApplication::translate(
            "quillfern::JobPlan", "Output folder is non-writable!\r\nPlease select valid output folder.");
    return std::nullopt;
}

std::int64_t planJob(Process& process, const std::vector<FileItem>& files, Settings& settings)
{
    const FilePath folder = FilePath::fromText(settings.outputFolderPath.value_or(QString()));
    std::int64_t totalPages = 0;
    process.setIsCombining(true);
    for (const FileItem& item : files) {
        OutputFile output;
        output.initWithData(folder.child(item.name()), std::vector{item});
        process.outputFiles.push_back(std::move(output));
        totalPages += item.pages();
    }
    process.setTotalFileSelected(static_cast<std::int32_t>(files.size()));
    settings.number->reset();
    return totalPages;
}

} // namespace quillfern
