#include "batch/JobPart.h"

#include "batch/Job.h"
#include "platform/system/Failure.h"

#include <QHash>

namespace quillfern {

JobPart partOf(const Job& job)
{
    return job.part ? *job.part : JobPart{0, job.outputFiles.size(), 1, 1, job.totalPages};
}

void takePart(Job& job, int number, int count)
{
    const std::size_t files = job.outputFiles.size();
    const auto place = [&](int parts) {
        return files * static_cast<std::size_t>(parts) / static_cast<std::size_t>(count);
    };
    JobPart part{place(number - 1), place(number), number, count};
    QHash<FilePath, FilePath> names;
    for (std::size_t i = part.first; i < part.end; ++i)
        for (const FileItem& item : job.outputFiles[i].fileItems()) {
            part.pages += item.pages();
            if (item.pages() > 0) names.insert(job.outputFiles[i].filename(), item.filePath());
        }
    for (std::size_t i = 0; i < files; ++i) {
        if (i >= part.first && i < part.end) continue;
        const auto found = names.constFind(job.outputFiles[i].filename());
        const std::vector<FileItem>& items = job.outputFiles[i].fileItems();
        if (found == names.constEnd() || items.empty() || items.back().pages() <= 0) continue;
        throw Failure({QT_TRANSLATE_NOOP("quillfern::Failure",
                                         "The copies of %1 and %2 have one name and belong to different "
                                         "parts of the job."),
                       {found->readable(), items.back().filePath().readable()}});
    }
    job.part = part;
}

} // namespace quillfern
