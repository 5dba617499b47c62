#pragma once

#include <cstdint>
#include <optional>

namespace quillfern::pdf {

class FileInput;

/// Where and how an incremental update continues a PDF file.
struct SourceEnd
{
    std::int64_t size = 0;           ///< of the file, in bytes
    std::int64_t crossReference = 0; ///< where the last cross-reference section begins, from the file's start
    bool isStream = false;           ///< that section is a stream (ISO 32000-1, 7.5.8), not a table
};

/// Nothing when the file does not begin with its header, or when its end is not what the format asks for, so
/// that nothing can be appended safely. Throws Failure when the file cannot be read.
[[nodiscard]] std::optional<SourceEnd> findSourceEnd(const FileInput& source);

/// Whether the cross-reference has room for what is appended to a file that ends so.
[[nodiscard]] bool canContinue(const SourceEnd& end);

} // namespace quillfern::pdf
