#pragma once

#include <string>

namespace quillfern::pdf {

/// Where an inline image ends.
struct InlineImageEnd
{
    const char* after = nullptr; ///< behind the EI; the end of the content when it never comes
    std::string closing;         ///< what would end an image that never ends; empty for one that does
};

/// Finds the ends of the inline images of one content (ISO 32000-1, 8.9.7). Their data have no length of
/// their own: it follows from the image's size when nothing compresses it, from the data's own end mark for
/// some filters, and otherwise from an EI that is followed by something that reads as content.
///
/// What was looked for far behind one image is kept for the next, so that all images together cost no more
/// than one reading of the content, whatever it holds.
class InlineImages
{
  public:
    /// The content must outlive this object.
    explicit InlineImages(const char* contentEnd) : end_(contentEnd) {}

    /// `dictionary` is the place behind a BI operator; the images are asked for in their order.
    [[nodiscard]] InlineImageEnd endOf(const char* dictionary);

  private:
    /// The next of something; it stays the next one for all places before it.
    struct Next
    {
        const char* at = nullptr;    ///< the content's end when none comes; null before the first look
        const char* after = nullptr; ///< behind the EI that belongs to it; null for none
    };

    const char* endByMark(Next& next, const char* mark, const char* data);
    const char* endByLooking(const char* data);

    const char* end_;
    Next text85_;   ///< the next end mark of ASCII85 data
    Next textHex_;  ///< the next end mark of hexadecimal data
    Next operator_; ///< the next EI that reads as one
};

} // namespace quillfern::pdf
