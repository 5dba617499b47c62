#include "batch/DocumentProcessors.h"

#include "batch/PdfProcessor.h"
#include "batch/TiffProcessor.h"
#include "platform/drawing/TextShaper.h"
#include "platform/pdf/PdfWriter.h"

namespace quillfern {

namespace {

class StampingProcessors final : public DocumentProcessors
{
  public:
    StampingProcessors(const JobConfiguration& job, std::shared_ptr<pdf::SharedCodings> codings)
        : pdf_(job, shaper_, writerFor(job), std::move(codings)), tiff_(job, shaper_)
    {
    }

    StampedDocument processPDF(const FilePath& source, const FilePath& target, const QString& password,
                               JobRun& run) override
    {
        return pdf_.processPDF(source, target, password, run);
    }

    StampedDocument processTIFF(const FilePath& source, const FilePath& target, JobRun& run,
                                std::int32_t compression) override
    {
        return tiff_.processTIFF(source, target, run, compression);
    }

  private:
    [[nodiscard]] const pdf::PdfWriter& writerFor(const JobConfiguration& job) const
    {
        return job.isWrittenAnew ? static_cast<const pdf::PdfWriter&>(rewriting_) : appending_;
    }

    // One shaper for all documents of the thread: a template is laid out once, not once a document.
    drawing::TextShaper shaper_;
    const pdf::AppendingPdfWriter appending_;
    const pdf::RewritingPdfWriter rewriting_;
    PdfProcessor pdf_;
    TiffProcessor tiff_;
};

} // namespace

std::unique_ptr<DocumentProcessors> makeDocumentProcessors(const JobConfiguration& job,
                                                           const std::shared_ptr<pdf::SharedCodings>& codings)
{
    return std::make_unique<StampingProcessors>(job, codings);
}

} // namespace quillfern
