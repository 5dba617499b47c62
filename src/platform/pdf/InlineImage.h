#pragma once

#include <string>

namespace quillfern {

/// Where an inline image ends (ISO 32000-1, 8.9.7). Its data has no length of its own: it follows from the
/// image's size when nothing compresses it, from the data's own end mark for some filters, and otherwise from
/// an EI that is followed by something that reads as content.
struct InlineImageEnd
{
    const char* after = nullptr; ///< behind the EI; the end of the content when it never comes
    std::string closing;         ///< what would end an image that never ends; empty for one that does
};

/// `dictionary` is the place behind the BI operator.
[[nodiscard]] InlineImageEnd endOfInlineImage(const char* dictionary, const char* end);

} // namespace quillfern
