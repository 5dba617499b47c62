#pragma once

#include "batch/OutputFile.h"
#include "platform/system/FileIdentity.h"
#include "platform/system/FilePath.h"

#include <functional>
#include <optional>
#include <unordered_map>
#include <vector>

namespace quillfern {

/// What one output of a job has to do with the other documents of the job.
struct Collision
{
    FilePath overwritesInput; ///< another input at the output's place; the output is not written
    FilePath stampedAs;       ///< an earlier name of the same file, which the job stamps in place under it
    /// The input as it was when the job began; for an output in place only.
    std::optional<FileVersion> version;
    bool isCopyThere = false; ///< before the job, which leaves the copy as it is and does not stamp the file
};

/// Where the inputs of a job are, and the files behind those that are links, as they are now.
class InputPlaces
{
  public:
    /// `goOn` is called before each output; once it returns false, the others are left out.
    InputPlaces(const std::vector<OutputFile>& outputs, const std::function<bool()>& goOn);

    /// The first input that a new file at `target` would replace, also when the input has been replaced
    /// since; null when there is none.
    [[nodiscard]] const FilePath* inputAt(const FilePath& target) const;
    /// The first input that was the file which `target` leads to.
    [[nodiscard]] const FilePath* inputBehind(const FilePath& target) const;

  private:
    std::unordered_map<FilePlace, FilePath> places_;
    std::unordered_map<FileIdentity, FilePath> files_;
};

/// One entry for each output, in order; empty entries from where `goOn` returned false, which is called
/// before each output and each input. Looks at every file of the list, and changes nothing. Among the outputs
/// that are written, none reads or replaces what another one reads, so that they can be made at the same
/// time.
[[nodiscard]] std::vector<Collision> findCollisions(const std::vector<OutputFile>& outputs,
                                                    const std::function<bool()>& goOn);

} // namespace quillfern
