#pragma once

#include "batch/DocumentProcessors.h"

#include <optional>
#include <utility>

namespace quillfern {

/// What a test does with a document instead of the processors; nothing for what the real ones do.
using Stage = std::function<std::optional<StampedDocument>(const FilePath& source, bool isTiff, JobRun& run)>;

/// The real processors, except where the test steps in.
class StagedProcessors final : public DocumentProcessors
{
  public:
    StagedProcessors(std::unique_ptr<DocumentProcessors> real, const Stage& stage)
        : real_(std::move(real)), stage_(stage)
    {
    }
    StampedDocument processPDF(const FilePath& source, const FilePath& target, const QString& password,
                               JobRun& run) override
    {
        auto staged = stage_(source, false, run);
        return staged ? std::move(*staged) : real_->processPDF(source, target, password, run);
    }
    StampedDocument processTIFF(const FilePath& source, const FilePath& target, JobRun& run,
                                std::int32_t compression) override
    {
        auto staged = stage_(source, true, run);
        return staged ? std::move(*staged) : real_->processTIFF(source, target, run, compression);
    }

    static DocumentProcessorsFactory factory(Stage stage)
    {
        return [stage = std::move(stage)](const JobConfiguration& job, const auto& codings) {
            return std::make_unique<StagedProcessors>(makeDocumentProcessors(job, codings), stage);
        };
    }

  private:
    std::unique_ptr<DocumentProcessors> real_;
    const Stage stage_;
};

} // namespace quillfern
