#include "batch/DocumentProcessors.h"

#include "batch/PdfProcessor.h"
#include "batch/TiffProcessor.h"
#include "config/Numbering.h"
#include "platform/drawing/TextShaper.h"
#include "platform/pdf/PdfWriter.h"

namespace quillfern {

namespace {

class StampingProcessors final : public DocumentProcessors
{
  public:
    StampingProcessors(Numbering& number, const PageProgress& progress)
        : pdf_(number, shaper_, writer_, progress), tiff_(number, shaper_, progress)
    {
    }

    bool processPDF(const FilePath& source, const FilePath& target, const QString& password,
                    std::int64_t totalPages) override
    {
        const bool done = pdf_.processPDF(source, target, password, totalPages);
        problem_ = pdf_.lastProblem();
        return done;
    }

    bool processTIFF(const FilePath& source, const FilePath& target, std::int64_t totalPages,
                     std::int32_t compression) override
    {
        const bool done = tiff_.processTIFF(source, target, totalPages, compression);
        problem_ = tiff_.lastProblem();
        return done;
    }

    [[nodiscard]] QString lastProblem() const override { return problem_; }

  private:
    // One shaper for the whole run: a template is laid out once, not once a document.
    TextShaper shaper_;
    RewritingPdfWriter writer_;
    PdfProcessor pdf_;
    TiffProcessor tiff_;
    QString problem_;
};

} // namespace

std::unique_ptr<DocumentProcessors> makeDocumentProcessors(Numbering& number, PageProgress progress)
{
    return std::make_unique<StampingProcessors>(number, progress);
}

} // namespace quillfern
