#pragma once

#include "batch/OutputNames.h"
#include "config/JobOptions.h"
#include "platform/store/AtomicFile.h"
#include "platform/system/FilePath.h"

#include <optional>

namespace quillfern {

/// Moves a finished copy below the output folder and makes the folders that it needs there. Never outside of
/// that folder: a link on the way is a Failure. What stands under the name already is replaced, or left, and
/// then the copy gets a number or no name at all; that is decided in one step with the move, whatever other
/// programs do at the time. Returns where the copy is; nothing for Skip, when the name is taken. Throws
/// Failure.
[[nodiscard]] std::optional<FilePath> commitCopy(store::AtomicFile& file, const FilePath& outputFolder,
                                                 const OutputNames& names, const CopyName& copy,
                                                 ExistingCopies existing);

} // namespace quillfern
