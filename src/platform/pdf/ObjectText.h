#pragma once

#include <string>
#include <string_view>

namespace quillfern::pdf {

/// The text of an object that qpdf cannot read, from behind "obj" on, in a form that it can read and that
/// says the same, as far as other readers understand it: whole numbers beyond the range become real numbers,
/// words that are none become 0, arrays and dictionaries nested too deeply become 0, and what is left open is
/// closed. A stream's data follow as they are. Empty where nothing can be done, or the object is null.
[[nodiscard]] std::string mendedObjectText(std::string_view text);

} // namespace quillfern::pdf
