#include "batch/SourceLooks.h"

#include "batch/StampFindings.h"
#include "platform/system/Cancellation.h"
#include "platform/system/FileFacts.h"
#include "platform/system/WorkerPool.h"

#include <algorithm>

namespace quillfern {

namespace {

/// Files for one task of a thread: a file is read in less than a millisecond.
constexpr std::size_t filesAtATime = 64;

SourceLook lookAt(const OutputFile& output, const Job& job, const pdf::PdfLookRequest& request,
                  const std::stop_token& stop)
{
    SourceLook look;
    const FileItem& item = output.fileItems().back();
    look.isTargetTaken = isNameTaken(output.filename());
    look.version = fileVersion(item.filePath());
    if (item.fileType() != FileType::Pdf) {
        look.image = raster::lookAtFirstPage(item.filePath(), stop);
        return look;
    }
    const JobOptions& options = job.configuration.options;
    pdf::Passwords passwords;
    if (options.usePasswords) passwords.texts = {item.pdfOpenPassword(), options.password};
    look.document = pdf::lookAtPdf(item.filePath(), request, stop, passwords);
    return look;
}

} // namespace

std::vector<SourceLook> lookAtSources(const Job& job, const std::stop_token& stop)
{
    const pdf::PdfLookRequest request{drawTransparently(job.configuration.stamps),
                                      job.configuration.options.visiblePage ? pdf::PageArea::Visible
                                                                            : pdf::PageArea::Whole};
    const std::vector<OutputFile>& outputs = job.outputFiles;
    const JobPart part = partOf(job);
    std::vector<SourceLook> looks(outputs.size());
    {
        WorkerPool pool;
        for (std::size_t first = part.first; first < part.end; first += filesAtATime)
            pool.start([&, first] {
                const std::size_t end = std::min(first + filesAtATime, part.end);
                for (std::size_t i = first; i < end && !stop.stop_requested(); ++i) {
                    if (outputs[i].fileItems().empty()) continue;
                    try {
                        looks[i] = lookAt(outputs[i], job, request, stop);
                    } catch (const std::exception&) {
                        looks[i] = {}; // given up, or without memory: nothing is known of the file
                    }
                }
            });
        static_cast<void>(pool.waitForDone());
    }
    throwIfCancelled(stop);
    return looks;
}

} // namespace quillfern
