#pragma once

#include "platform/raster/ImageFileReader.h"

#include <QRect>
#include <optional>
#include <vector>

namespace quillfern::raster {

/// Where the frames of a GIF file are and how they are combined. Found without decoding pixels.
struct GifLayout
{
    /// What becomes of a frame's place when the next frame is drawn.
    enum class Disposal { Keep, Clear, Restore };

    struct Frame
    {
        QRect rect; ///< on the screen; may stick out
        qint64 paletteAt = 0;
        int colours = 0; ///< of the palette; 0 where the file has none
        qint64 pixelsAt = 0;
        bool isInterlaced = false;
        int transparent = -1; ///< the index that leaves the screen as it is; -1 for none
        Disposal disposal = Disposal::Keep;
    };

    QSize screen;
    std::vector<Frame> frames;
    /// False when the file breaks off between or inside the blocks that frames are made of. An end mark that
    /// is missing behind the last frame costs no pixel, nor does the end of its blocks.
    bool isWhole = true;

    /// True when no pixel of any page is transparent.
    [[nodiscard]] bool isOpaque() const;

    /// Nothing for a file that is no GIF or has no frame.
    [[nodiscard]] static std::optional<GifLayout> read(QIODevice& file, const std::stop_token& stop = {});
};

/// The frames of a GIF as a viewer shows them one after the other.
class GifReader final : public ImageFileReader
{
  public:
    explicit GifReader(std::unique_ptr<QIODevice> device, const std::stop_token& stop = {});

    [[nodiscard]] RasterPage readPage(const std::stop_token& stop = {}) override;
    /// Frames build on each other: passing over one decodes it all the same.
    void skipPage(const std::stop_token& stop = {}) override { drawNext(stop); }

  private:
    void drawNext(const std::stop_token& stop);
    void drawFrame(const GifLayout::Frame& frame, const std::stop_token& stop);

    std::unique_ptr<QIODevice> device_;
    GifLayout layout_;
    std::size_t next_ = 0; ///< the frame that is drawn next
    QImage screen_;
    QImage before_; ///< the screen without the frame last drawn, where that has to be restored
};

} // namespace quillfern::raster
