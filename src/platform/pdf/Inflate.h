#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace quillfern::pdf {

/// Inflates sound zlib data in one go, which is several times as fast as piece by piece, to at most `largest`
/// bytes. False for damaged data and for more bytes than that.
[[nodiscard]] bool inflateWhole(std::string_view deflated, std::size_t largest, std::string& inflated);

} // namespace quillfern::pdf
