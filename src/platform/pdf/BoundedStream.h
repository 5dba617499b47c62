#pragma once

#include <cstddef>
#include <optional>
#include <qpdf/QPDFObjectHandle.hh>
#include <stop_token>
#include <string>

namespace quillfern::pdf {

/// The stream's data with all its filters undone, as far as `largest` bytes: a few bytes of a hostile file
/// can claim to be gigabytes. Nothing for a stream that cannot be decoded; `tooLarge` is true when the data
/// exceed `largest`. decodeBounded() throws an Interruption (LibraryErrors.h) once `stop` is stopped.
struct BoundedStream
{
    std::optional<std::string> data;
    bool tooLarge = false;
};

/// As much of a stream with no other filter than FlateDecode as its damaged data give, up to `largest` bytes;
/// empty for any other stream.
[[nodiscard]] std::string inflatedPart(QPDFObjectHandle stream, std::size_t largest);

[[nodiscard]] BoundedStream decodeBounded(QPDFObjectHandle stream, std::size_t largest,
                                          const std::stop_token& stop = {});

} // namespace quillfern::pdf
