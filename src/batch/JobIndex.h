#pragma once

#include "batch/Job.h"
#include "batch/Log.h"
#include "platform/system/FilePath.h"

#include <QByteArray>
#include <optional>
#include <vector>

namespace quillfern {

/// The index of a job as CSV (RFC 4180) in UTF-8 without a byte order mark: a header line and one line for
/// each file of the list, also for those that a stopped job did not begin ("not-begun"). Its columns are
/// described in docs/index.md.
///
/// A part of a job has the lines of its files only, and the first part alone has the header line, so that the
/// indexes of all parts one behind the other are that of the whole job.
///
/// `files` is what the log has of the job's outputs, from the first on.
[[nodiscard]] QByteArray jobIndex(const Job& job, const std::vector<LogFiles>& files);

/// Where the index of a job belongs: the file that its options name, or "index.csv" in the output folder;
/// nothing for a job without an index.
[[nodiscard]] std::optional<FilePath> indexPath(const Job& job);

/// Writes the index of a job that has one, in one step. An earlier index beside the copies is kept under
/// another name, as store::writeKeepingEarlier() does; a file that the options name is replaced, but no
/// copy of the job. Throws Failure.
void writeIndex(const Job& job, const std::vector<LogFiles>& files);

} // namespace quillfern
