#pragma once

#include "batch/Job.h"
#include "platform/pdf/PdfLook.h"
#include "platform/raster/PageLook.h"
#include "platform/system/FileIdentity.h"

#include <optional>
#include <stop_token>
#include <vector>

namespace quillfern {

/// What a first look at one file of a job tells, and at the place of its copy.
struct SourceLook
{
    std::optional<FileVersion> version;
    std::optional<pdf::PdfLook> document;  ///< of a PDF
    std::optional<raster::PageLook> image; ///< of any other file
    bool isTargetTaken = false;            ///< something has the planned name of the copy
};

/// One for each output of the job, in order; empty outside of a part of a job. Reads a little of each file,
/// on all cores. Throws Cancelled once `stop` is stopped.
[[nodiscard]] std::vector<SourceLook> lookAtSources(const Job& job, const std::stop_token& stop);

} // namespace quillfern
