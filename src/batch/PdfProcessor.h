#pragma once

#include "batch/FileOutcome.h"
#include "batch/JobRun.h"
#include "config/JobConfiguration.h"
#include "platform/system/FilePath.h"

#include <QString>
#include <memory>

namespace quillfern::drawing {
class TextShaper;
}
namespace quillfern::pdf {
class PdfDocument;
class PdfWriter;
} // namespace quillfern::pdf

namespace quillfern {

class PageCompositor;

/// Stamps one PDF file: pages outside the range stay as they are, pages inside it are stamped or, where the
/// parity is not the chosen one, left blank (or as they are, by an option). Used on the shaper's thread.
class PdfProcessor
{
  public:
    /// All are borrowed and must outlive the processor.
    PdfProcessor(const JobConfiguration& job, drawing::TextShaper& shaper, const pdf::PdfWriter& writer)
        : job_(job), shaper_(shaper), writer_(writer)
    {
    }

    /// See DocumentProcessors. `password`, the file's own, is used only with the option to use passwords:
    /// otherwise a file that needs one is not opened.
    [[nodiscard]] FileOutcome processPDF(const FilePath& source, const FilePath& target,
                                         const QString& password, JobRun& run);

  private:
    FileOutcome stamp(const FilePath& source, const FilePath& target, const QString& password, JobRun& run);
    [[nodiscard]] std::unique_ptr<pdf::PdfDocument> open(const FilePath& source, const QString& password,
                                                         const JobRun& run) const;
    int stampPages(pdf::PdfDocument& document, const PageCompositor& compositor, JobRun& run);

    const JobConfiguration& job_;
    drawing::TextShaper& shaper_;
    const pdf::PdfWriter& writer_;
};

} // namespace quillfern
