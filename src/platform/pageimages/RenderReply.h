#pragma once

#include "platform/pageimages/PageImage.h"

#include <QByteArray>
#include <QtGlobal>
#include <optional>

namespace quillfern::pageimages {

/// What the rendering process answers with on its standard output: a header with the page's size in points
/// and the picture's in pixels, then the pixels, four bytes each, row after row. No image format is decoded
/// on the reading side, so an answer is either exactly what it should be or refused.

/// The page's picture must be an RGB32 image.
[[nodiscard]] QByteArray encodeRenderReply(const PageImage& page);

/// The most bytes that an answer to this request can have.
[[nodiscard]] qint64 largestRenderReply(const PageImageRequest& request);

/// Nothing when the bytes are not an answer to this request; they may be anything.
[[nodiscard]] std::optional<PageImage> decodeRenderReply(const QByteArray& bytes,
                                                         const PageImageRequest& request);

} // namespace quillfern::pageimages
