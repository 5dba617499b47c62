#pragma once

#include <string>

namespace quillfern::pdf {

struct PlainPage;

/// What of a page's dictionary is replaced, as text; what is empty stays as it is.
struct PlainPageEdits
{
    std::string contents;
    std::string resources;
};

/// The page's dictionary with these entries. The page shows exactly its media box then, as all stamped pages
/// do.
[[nodiscard]] std::string editedPage(const PlainPage& page, const PlainPageEdits& edits);

} // namespace quillfern::pdf
