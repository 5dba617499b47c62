#include "platform/raster/GifReader.h"

#include "platform/raster/RasterLimits.h"
#include "platform/system/Cancellation.h"

#include <QtEndian>
#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

namespace quillfern::raster {

namespace {

constexpr int mostPixelsPerByte = 4096 * 8 / 12; ///< strings of 4096 pixels for codes of 12 bits

int little16(const QByteArray& bytes, qsizetype at)
{
    return qFromLittleEndian<quint16>(bytes.constData() + at);
}

/// The number of colours of a table whose presence and size are part of the byte `packed`.
int coloursOf(char packed)
{
    return (packed & 0x80) != 0 ? 2 << (packed & 7) : 0;
}

/// Passes over the blocks of an extension or of image data, up to the empty one; false when the file ends.
bool skipBlocks(QIODevice& file)
{
    char size = 0;
    while (file.getChar(&size)) {
        if (size == 0) return true;
        if (file.skip(static_cast<uchar>(size)) != static_cast<uchar>(size)) return false;
    }
    return false;
}

/// Codes of growing width out of a frame's blocks, and the strings of pixels that they stand for.
class LzwStrings
{
  public:
    LzwStrings(QIODevice& file, int width)
        : file_(file), first_(width), clear_(1U << width), next_(clear_ + 2), width_(width + 1)
    {
        for (unsigned i = 0; i < clear_; ++i)
            last_[i] = static_cast<uchar>(i);
    }

    /// The pixels of the next string; none at the end of the data, and where a code is impossible.
    [[nodiscard]] std::pair<const uchar*, int> next()
    {
        for (unsigned code = 0; take(code);) {
            if (code == clear_) {
                next_ = clear_ + 2;
                width_ = first_ + 1;
                previous_ = none;
                continue;
            }
            if (code == clear_ + 1 || code > next_ || (code == next_ && previous_ == none)) break;
            return string(code);
        }
        return {nullptr, 0};
    }

  private:
    static constexpr unsigned most = 4096;
    static constexpr unsigned none = most;

    bool take(unsigned& code)
    {
        while (bits_ < width_) {
            if (at_ == size_ && !refill()) return false;
            pending_ |= static_cast<unsigned>(block_[at_++]) << bits_;
            bits_ += 8;
        }
        code = pending_ & ((1U << width_) - 1);
        pending_ >>= width_;
        bits_ -= width_;
        return true;
    }

    bool refill()
    {
        char size = 0;
        if (!file_.getChar(&size) || size == 0) return false;
        const qint64 count = file_.read(reinterpret_cast<char*>(block_.data()), static_cast<uchar>(size));
        size_ = static_cast<std::size_t>(std::max<qint64>(count, 0));
        at_ = 0;
        return size_ > 0;
    }

    /// Unfolds a string from its end and remembers the one that it makes with the string before.
    std::pair<const uchar*, int> string(unsigned code)
    {
        uchar* out = text_.data() + text_.size();
        const bool isNew = code == next_;
        if (isNew) --out; // the first pixel of the string before, put in below
        for (unsigned rest = isNew ? previous_ : code;; rest = prefix_[rest]) {
            *--out = last_[rest];
            if (rest < clear_) break;
        }
        if (isNew) text_.back() = *out;
        if (previous_ != none && next_ < most) {
            prefix_[next_] = static_cast<quint16>(previous_);
            last_[next_] = *out;
            ++next_;
            if (next_ == 1U << width_ && width_ < 12) ++width_;
        }
        previous_ = code;
        return {out, static_cast<int>(text_.data() + text_.size() - out)};
    }

    QIODevice& file_;
    std::array<uchar, 255> block_ = {};
    std::size_t at_ = 0;
    std::size_t size_ = 0;
    std::array<quint16, most> prefix_ = {};
    std::array<uchar, most> last_ = {};
    std::array<uchar, most + 1> text_ = {};
    unsigned pending_ = 0;
    int bits_ = 0;
    int first_;
    unsigned clear_;
    unsigned next_;
    unsigned previous_ = none;
    int width_;
};

/// The rows of a frame in the order in which they are stored.
class RowOrder
{
  public:
    RowOrder(int height, bool isInterlaced) : height_(height), pass_(isInterlaced ? 0 : plain) {}

    [[nodiscard]] int row() const { return row_; }
    void advance()
    {
        row_ += steps[pass_];
        while (row_ >= height_ && pass_ < 3)
            row_ = starts[++pass_];
    }

  private:
    static constexpr std::array starts = {0, 4, 2, 1, 0};
    static constexpr std::array steps = {8, 8, 4, 2, 1};
    static constexpr std::size_t plain = 4;

    int height_;
    std::size_t pass_;
    int row_ = 0;
};

/// Clears the part of the screen that the rectangle covers.
void clearPart(QImage& screen, const QRect& rect)
{
    const QRect part = rect & screen.rect();
    const auto step = static_cast<std::size_t>(screen.depth() / 8);
    for (int y = part.top(); y <= part.bottom(); ++y)
        std::memset(screen.scanLine(y) + static_cast<std::size_t>(part.left()) * step, 0,
                    static_cast<std::size_t>(part.width()) * step);
}

} // namespace

bool GifLayout::isOpaque() const
{
    const Frame& first = frames.front();
    return first.transparent < 0 && first.rect.contains(QRect(QPoint(), screen)) &&
           std::none_of(frames.begin(), frames.end(),
                        [](const Frame& frame) { return frame.disposal == Disposal::Clear; });
}

std::optional<GifLayout> GifLayout::read(QIODevice& file, const std::stop_token& stop)
{
    file.seek(0);
    const QByteArray head = file.read(13);
    if (!head.startsWith("GIF8") || head.size() < 13) return std::nullopt;
    GifLayout layout;
    layout.screen = {little16(head, 6), little16(head, 8)};
    const int colours = coloursOf(head[10]);
    const qint64 palette = file.pos();
    file.skip(qint64{colours} * 3);
    Frame control; // what the control block before a frame says of the frame
    char kind = 0;
    while (file.getChar(&kind) && (kind == '!' || kind == ',' || kind == 0)) {
        throwIfCancelled(stop);
        if (kind == 0) continue; // empty blocks too many
        if (kind == '!') {
            const QByteArray start = file.peek(6);
            if (start.size() == 6 && start.startsWith("\xF9\4")) {
                const int disposal = start[2] >> 2 & 7;
                control.disposal = disposal == 2   ? Disposal::Clear
                                   : disposal == 3 ? Disposal::Restore
                                                   : Disposal::Keep;
                control.transparent = (start[2] & 1) != 0 ? static_cast<uchar>(start[5]) : -1;
            }
            file.skip(1);
            layout.isWhole = skipBlocks(file);
        } else {
            Frame frame = std::exchange(control, {});
            const QByteArray place = file.read(9);
            layout.isWhole = place.size() == 9;
            if (!layout.isWhole) break;
            frame.rect = {little16(place, 0), little16(place, 2), little16(place, 4), little16(place, 6)};
            frame.isInterlaced = (place[8] & 0x40) != 0;
            const int own = coloursOf(place[8]);
            frame.colours = own > 0 ? own : colours;
            frame.paletteAt = own > 0 ? file.pos() : palette;
            file.skip(qint64{own} * 3);
            frame.pixelsAt = file.pos();
            file.skip(1);
            layout.frames.push_back(frame);
            if (!skipBlocks(file)) break; // the pixels show whether any is missing
        }
        if (!layout.isWhole) break;
    }
    if (layout.frames.empty()) return std::nullopt;
    // Some writers leave the size to the first frame.
    const QRect first = layout.frames.front().rect;
    layout.screen = layout.screen.expandedTo({first.x() + first.width(), first.y() + first.height()});
    return layout;
}

GifReader::GifReader(std::unique_ptr<QIODevice> device, const std::stop_token& stop)
    : device_(std::move(device))
{
    std::optional<GifLayout> layout = GifLayout::read(*device_, stop);
    if (!layout)
        throw Failure(QT_TRANSLATE_NOOP("quillfern::Failure", "This is not a picture that can be read."));
    layout_ = std::move(*layout);
    describe(layout_.screen, layout_.isOpaque() ? 3 : 4, {plainDotsPerInch, plainDotsPerInch}, 1,
             static_cast<int>(layout_.frames.size()));
    checkClaim(layout_.screen.width(), layout_.screen.height(), 1, static_cast<double>(device_->size()),
               mostPixelsPerByte);
    if (!layout_.isWhole) throwDamaged();
}

RasterPage GifReader::readPage(const std::stop_token& stop)
{
    drawNext(stop);
    RasterPage page;
    page.image = screen_; // the frames that follow draw on a copy of their own
    if (next_ == layout_.frames.size()) screen_ = QImage();
    return page;
}

void GifReader::drawNext(const std::stop_token& stop)
{
    using Disposal = GifLayout::Disposal;
    if (next_ == layout_.frames.size()) throwDamaged();
    if (next_ == 0) {
        screen_ = makePageImage(layout_.screen.width(), layout_.screen.height(),
                                layout_.isOpaque() ? QImage::Format_RGB888 : QImage::Format_RGBA8888);
        screen_.fill(0);
    } else {
        const GifLayout::Frame& last = layout_.frames[next_ - 1];
        if (last.disposal == Disposal::Clear) clearPart(screen_, last.rect);
        if (last.disposal == Disposal::Restore) screen_ = std::move(before_);
    }
    before_ = QImage();
    const GifLayout::Frame& frame = layout_.frames[next_];
    const bool isLast = next_ + 1 == layout_.frames.size();
    if (frame.disposal == Disposal::Restore && !isLast) before_ = screen_;
    drawFrame(frame, stop);
    ++next_;
}

void GifReader::drawFrame(const GifLayout::Frame& frame, const std::stop_token& stop)
{
    device_->seek(frame.paletteAt);
    const QByteArray palette = device_->read(qint64{frame.colours} * 3);
    std::array<std::array<uchar, 4>, 256> colours = {};
    for (std::size_t i = 0; i < colours.size(); ++i) {
        const auto at = static_cast<qsizetype>(i * 3);
        for (qsizetype c = 0; c < 3; ++c)
            if (at + c < palette.size())
                colours[i][static_cast<std::size_t>(c)] = static_cast<uchar>(palette[at + c]);
            else if (palette.isEmpty())
                colours[i][static_cast<std::size_t>(c)] = static_cast<uchar>(i);
        colours[i][3] = 255;
    }
    device_->seek(frame.pixelsAt);
    char width = 0;
    if (!device_->getChar(&width) || width < 1 || width > 11) throwDamaged();
    LzwStrings strings(*device_, width);
    RowOrder order(frame.rect.height(), frame.isInterlaced);
    const auto step = static_cast<std::size_t>(screen_.depth() / 8);
    std::pair<const uchar*, int> pixels = {nullptr, 0};
    for (int stored = 0; stored < frame.rect.height(); ++stored, order.advance()) {
        throwIfCancelled(stop);
        const int y = frame.rect.y() + order.row();
        uchar* row = y < screen_.height() ? screen_.scanLine(y) : nullptr;
        for (int column = 0; column < frame.rect.width(); ++column) {
            if (pixels.second == 0) pixels = strings.next();
            if (pixels.second == 0) throwDamaged();
            const uchar index = *pixels.first++;
            --pixels.second;
            const int x = frame.rect.x() + column;
            if (!row || x >= screen_.width() || index == frame.transparent) continue;
            std::memcpy(row + static_cast<std::size_t>(x) * step, colours[index].data(), step);
        }
    }
}

} // namespace quillfern::raster
