#pragma once

#include "batch/JobRun.h"
#include "batch/StampedDocument.h"
#include "config/JobConfiguration.h"
#include "platform/system/FilePath.h"

#include <QString>
#include <memory>
#include <utility>

namespace quillfern::drawing {
class TextShaper;
}
namespace quillfern::pdf {
class PdfDocument;
class PdfWriter;
class SharedCodings;
} // namespace quillfern::pdf

namespace quillfern {

class PageCompositor;

/// Stamps one PDF file: pages outside the range stay as they are, pages inside it are stamped or, where the
/// parity is not the chosen one, left blank (or as they are, by an option). Used on the shaper's thread.
class PdfProcessor
{
  public:
    /// The first three are borrowed and must outlive the processor; `codings` are those of the whole job.
    PdfProcessor(const JobConfiguration& job, drawing::TextShaper& shaper, const pdf::PdfWriter& writer,
                 std::shared_ptr<pdf::SharedCodings> codings)
        : job_(job), shaper_(shaper), writer_(writer), codings_(std::move(codings))
    {
    }

    /// See DocumentProcessors. `password`, the file's own, is used only with the option to use passwords:
    /// otherwise a file that needs one is not opened.
    [[nodiscard]] StampedDocument processPDF(const FilePath& source, const FilePath& target,
                                             const QString& password, JobRun& run);

  private:
    void stamp(StampedDocument& work, const FilePath& target, const QString& password, JobRun& run);
    [[nodiscard]] bool isWrittenAnew() const;
    [[nodiscard]] std::unique_ptr<pdf::PdfDocument> open(const FilePath& source, const QString& password,
                                                         const JobRun& run) const;
    int stampPages(pdf::PdfDocument& document, const PageCompositor& compositor, JobRun& run);

    const JobConfiguration& job_;
    drawing::TextShaper& shaper_;
    const pdf::PdfWriter& writer_;
    std::shared_ptr<pdf::SharedCodings> codings_;
};

} // namespace quillfern
