#pragma once

#include "batch/DocumentProcessors.h"

namespace quillfern {

class PdfDocument;
class PdfWriter;
class TextShaper;

/// Stamps one PDF file: pages outside the range stay as they are, pages inside it are stamped or, where the
/// parity is not the chosen one, left blank. Used on the job's worker thread.
class PdfProcessor
{
  public:
    PdfProcessor(Numbering& number, TextShaper& shaper, const PdfWriter& writer, PageProgress progress)
        : number_(number), shaper_(shaper), writer_(writer), progress_(std::move(progress))
    {
    }

    /// See DocumentProcessors. `password` is not used: a file that needs one is not opened. A total of 0 or
    /// less stands for the document's own page count.
    bool processPDF(const FilePath& source, const FilePath& target, const QString& password,
                    std::int64_t totalPages);

    [[nodiscard]] const QString& lastProblem() const { return problem_; }

  private:
    bool stamp(const FilePath& source, const FilePath& target, std::int64_t totalPages);
    int stampPages(PdfDocument& document, std::int64_t totalPages);

    Numbering& number_;
    TextShaper& shaper_;
    const PdfWriter& writer_;
    PageProgress progress_;
    QString problem_;
};

} // namespace quillfern
