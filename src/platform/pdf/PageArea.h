#pragma once

namespace quillfern::pdf {

/// Which part of a page stamps are placed in (ISO 32000-1, 14.11.2).
enum class PageArea {
    Whole,   ///< the media box, which a stamped page shows whole afterwards
    Visible, ///< what the crop box shows of it; the crop box stays
};

} // namespace quillfern::pdf
