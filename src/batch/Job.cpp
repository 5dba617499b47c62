#include "batch/Job.h"

#include "platform/system/Failure.h"
#include "platform/system/FileAccess.h"
#include "platform/system/FileFacts.h"
#include "platform/system/FreeMemory.h"
#include "platform/system/QtThreads.h"

#include <QThread>
#include <algorithm>

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

void requireResources()
{
    constexpr std::size_t fontsAndLibraries = std::size_t{32} << 20;
    constexpr std::size_t stackOfThread = std::size_t{10} << 20;
    const auto threads = static_cast<std::size_t>(std::max(2, QThread::idealThreadCount()));
    requireFreeMemory(fontsAndLibraries + threads * stackOfThread);
    startQtThreads();
}

namespace {

bool namesCopies(const JobOptions& options)
{
    return options.keepFolders || options.tifNames || !options.namePattern.isEmpty() ||
           options.existing != ExistingCopies::Replace;
}

} // namespace

Job planJob(const std::vector<FileItem>& files, const Settings& settings, const QDate& date)
{
    Job job;
    job.configuration = settings.number->configuration();
    job.outputFolder = FilePath::fromText(settings.outputFolderPath.value_or(QString()));
    job.isOpenFolderAfterConversion = settings.isOpenFolderAfterConversion;
    JobOptions& options = job.configuration.options;
    if (options.password.isEmpty()) options.password = settings.pdfOpenPassword.value_or(QString());
    const JobConfiguration& configuration = job.configuration;
    std::vector<FileItem> sources = files;
    if (options.checkedOnly) std::erase_if(sources, [](const FileItem& item) { return !item.isSelected(); });
    if (options.usePasswords)
        for (FileItem& item : sources)
            item.countUnlocked(options.password);
    if (namesCopies(options)) job.names.emplace(configuration, job.outputFolder, sources, date);
    std::int64_t next = configuration.startNumber;
    for (const FileItem& item : sources) {
        FilePath target = job.outputFolder.child(item.name());
        if (job.names) {
            const std::int64_t count = stampedPages(configuration, item.pages());
            const NumbersUsed numbers{next, next + (count - 1) * configuration.numberSteps};
            target = job.names
                         ->of(job.outputFiles.size(), item.filePath(),
                              count > 0 ? std::optional(numbers) : std::nullopt)
                         .below(job.outputFolder);
            if (configuration.isContinuousNumbering) next += count * configuration.numberSteps;
        }
        OutputFile output;
        output.initWithData(target, std::vector{item});
        job.outputFiles.push_back(std::move(output));
        job.totalPages += item.pages();
    }
    return job;
}

} // namespace quillfern
