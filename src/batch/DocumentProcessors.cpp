#include "batch/DocumentProcessors.h"

#include "batch/PdfProcessor.h"
#include "config/Numbering.h"
#include "platform/drawing/TextShaper.h"
#include "platform/pdf/PdfWriter.h"

namespace quillfern {

namespace {

class StampingProcessors final : public DocumentProcessors
{
  public:
    StampingProcessors(Numbering& number, PageProgress progress)
        : pdf_(number, shaper_, writer_, std::move(progress))
    {
    }

    bool processPDF(const QString& source, const QString& target, const QString& password,
                    std::int64_t totalPages) override
    {
        const bool done = pdf_.processPDF(source, target, password, totalPages);
        problem_ = pdf_.lastProblem();
        return done;
    }

    bool processTIFF(const QString&, const QString&, std::int64_t, std::int32_t) override
    {
        problem_ = QStringLiteral("this build does not process raster files");
        return false;
    }

    [[nodiscard]] QString lastProblem() const override { return problem_; }

  private:
    // One shaper for the whole run: a template is laid out once, not once a document.
    TextShaper shaper_;
    RewritingPdfWriter writer_;
    PdfProcessor pdf_;
    QString problem_;
};

} // namespace

std::unique_ptr<DocumentProcessors> makeDocumentProcessors(Numbering& number, PageProgress progress)
{
    return std::make_unique<StampingProcessors>(number, std::move(progress));
}

} // namespace quillfern
