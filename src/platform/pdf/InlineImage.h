#pragma once

#include <cstddef>
#include <stop_token>
#include <string>

namespace quillfern::pdf {

/// Where an inline image ends.
struct InlineImageEnd
{
    const char* after = nullptr; ///< behind the EI; the end of the content when there is none
    std::string closing;         ///< the bytes that close an image without an end; empty for one with an end
    bool damaged = false;        ///< no end, or another than the image's size and filter say
};

/// Finds the ends of the inline images of one content (ISO 32000-1, 8.9.7). Their data have no length of
/// their own: it follows from the image's size when nothing compresses it, from the data's own end mark for
/// some filters, and otherwise from an EI that is followed by something that reads as content.
///
/// A mark found far behind one image is remembered for the next images, so that all of them together cost no
/// more than one reading of the content, whatever it holds.
class InlineImages
{
  public:
    /// The content and the token must outlive this object. endOf() throws Cancelled once the token is
    /// stopped.
    InlineImages(const char* contentBegin, const char* contentEnd, const std::stop_token& stop);

    /// `dictionary` is the place behind a BI operator; the images are asked for in their order.
    [[nodiscard]] InlineImageEnd endOf(const char* dictionary);

  private:
    /// The place of the next mark; the mark stays the next one for all places in front of it.
    struct Next
    {
        const char* at = nullptr;    ///< the content's end when none comes; null before the first look
        const char* after = nullptr; ///< behind the EI that belongs to it; null for none
    };

    const char* endByMark(Next& next, const char* mark, const char* data);
    const char* endByLooking(const char* data);
    bool looksAhead(const char* after);

    const char* end_;
    const std::stop_token& stop_;
    std::size_t mayLookAt_; ///< bytes that may still be read behind possible ends
    Next text85_;           ///< the next end mark of ASCII85 data
    Next textHex_;          ///< the next end mark of hexadecimal data
    Next operator_;         ///< the next EI that is followed by something that reads as content
    Next apart_;            ///< the next EI with white space before it
};

} // namespace quillfern::pdf
