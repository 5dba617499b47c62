#pragma once

#include "platform/raster/PageTags.h"

namespace quillfern::raster {

/// True for the names of chunks that hold texts.
[[nodiscard]] bool isPngText(const QByteArray& name);

/// Adds what a chunk of text says of the page: description, author, copyright (the first of each counts), and
/// an XMP packet. What is damaged, or longer than 16 MiB when it is unpacked, is left out.
void readPngText(const QByteArray& name, const QByteArray& chunk, PageTags& tags);

} // namespace quillfern::raster
