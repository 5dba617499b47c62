#pragma once

#include <cstddef>
#include <optional>
#include <qpdf/QPDFObjectHandle.hh>
#include <string>

namespace quillfern::pdf {

/// The stream's data with all its filters undone, as far as `largest` bytes: a few bytes of a hostile file
/// can claim to be gigabytes. Nothing for a stream that cannot be decoded; `tooLarge` is true when the data
/// exceed `largest`.
struct BoundedStream
{
    std::optional<std::string> data;
    bool tooLarge = false;
};

[[nodiscard]] BoundedStream decodeBounded(QPDFObjectHandle stream, std::size_t largest);

} // namespace quillfern::pdf
