#pragma once

#include <QByteArray>
#include <cstddef>
#include <stop_token>
#include <vector>

namespace quillfern::pdf {

/// What a page's content leaves open or closes too often. A stamp that follows the content must be drawn in
/// an untouched graphics state, outside of whatever text object, marked content or string was never ended.
struct ContentBalance
{
    /// Operators (and string ends) that close everything left open, in order; empty for sound content.
    QByteArray closing;
    /// Positions of the Q operators that have no q before them. Viewers ignore these operators. When the
    /// content is enclosed in a q and a Q of ours they must be removed, because they would restore the state
    /// that our q saved.
    std::vector<std::size_t> strayRestores;
    /// The content holds what no content may hold: words that are no operators, operators with too few
    /// operands (behind which some viewers stop), or a string, array, dictionary or inline image that does
    /// not end, or ends elsewhere than it says. Viewers differ on what follows.
    bool damaged = false;
    /// The content ends inside of a string, a comment, an array, a dictionary or an inline image.
    bool unfinished = false;

    [[nodiscard]] bool sound() const { return closing.isEmpty() && strayRestores.empty(); }
};

/// Reads a page's whole decoded content (ISO 32000-1, 7.8.2; its streams joined by white space). Strings,
/// comments and inline image data are passed over; the time is in proportion to the size, whatever the
/// content holds. Throws Failure for content nested beyond all reason, Cancelled once `stop` is stopped.
[[nodiscard]] ContentBalance balanceOfContent(const char* data, std::size_t size,
                                              const std::stop_token& stop = {});

} // namespace quillfern::pdf
