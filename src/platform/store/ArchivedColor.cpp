#include "platform/store/ArchivedColor.h"

#include <QtEndian>
#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <vector>

namespace quillfern::store {

namespace {

constexpr int newEntry = 0x84; // before a type or a name that is spelt out
constexpr int float32 = 0x83;
constexpr int int32 = 0x82;
constexpr int int16 = 0x81;

enum ColorSpace { CalibratedRgb = 1, DeviceRgb, CalibratedWhite, DeviceWhite, DeviceCmyk };

/// The typed stream that the object was archived into.
class TypedStream
{
  public:
    explicit TypedStream(const QByteArray& bytes) : bytes_(bytes) {}

    /// Reads the signature; false when there is none.
    bool readHeader()
    {
        bigEndian_ = bytes_.startsWith("\x04\x0Btypedstream");
        if (!bigEndian_ && !bytes_.startsWith("\x04\x0Bstreamtyped")) return false;
        position_ = 13;
        return number() == 1000.0;
    }

    void seek(qsizetype position) { position_ = position; }

    /// The next number: a whole one in one byte, or one in a longer form after its mark.
    std::optional<double> number()
    {
        const int mark = byteAt(position_);
        if (mark < 0) return std::nullopt;
        ++position_;
        switch (mark) {
        case int16:
            return integer<std::int16_t>();
        case int32:
            return integer<std::int32_t>();
        case float32: {
            const auto bits = integer<std::uint32_t>();
            if (!bits) return std::nullopt;
            const float value = std::bit_cast<float>(static_cast<std::uint32_t>(*bits));
            return std::isfinite(value) ? std::optional<double>(value) : std::nullopt;
        }
        default:
            if (mark >= 0x80 && mark < 0x92) return std::nullopt; // another mark
            return static_cast<double>(static_cast<signed char>(mark));
        }
    }

  private:
    int byteAt(qsizetype at) const
    {
        return at >= 0 && at < bytes_.size() ? static_cast<unsigned char>(bytes_[at]) : -1;
    }

    template <class Integer>
    std::optional<double> integer()
    {
        constexpr qsizetype size = sizeof(Integer);
        if (bytes_.size() - position_ < size) return std::nullopt;
        const char* at = bytes_.constData() + position_;
        position_ += size;
        return static_cast<double>(bigEndian_ ? qFromBigEndian<Integer>(at) : qFromLittleEndian<Integer>(at));
    }

    const QByteArray& bytes_;
    qsizetype position_ = 0;
    bool bigEndian_ = false;
};

std::optional<QColor> colorOf(int space, const std::vector<double>& parts)
{
    const auto part = [&](std::size_t i) { return static_cast<float>(std::clamp(parts[i], 0.0, 1.0)); };
    const std::size_t count = parts.size();
    if ((space == CalibratedRgb || space == DeviceRgb) && count == 4)
        return QColor::fromRgbF(part(0), part(1), part(2), part(3));
    if ((space == CalibratedWhite || space == DeviceWhite) && count == 2)
        return QColor::fromRgbF(part(0), part(0), part(0), part(1));
    if (space == DeviceCmyk && count == 5)
        return QColor::fromCmykF(part(0), part(1), part(2), part(3), part(4)).toRgb();
    return std::nullopt;
}

} // namespace

std::optional<QColor> readArchivedColor(const QByteArray& bytes)
{
    TypedStream stream(bytes);
    if (!stream.readHeader() || !bytes.contains("NSColor")) return std::nullopt;
    // The components stand behind the first spelt-out type of two, four or five floats, and the byte before
    // that type is the colour space. A named colour has its names in front of the type; other bytes do not
    // matter.
    for (qsizetype at = bytes.indexOf("NSColor"); at + 2 < bytes.size(); ++at) {
        if (static_cast<unsigned char>(bytes[at]) != newEntry) continue;
        const auto count = static_cast<std::size_t>(bytes[at + 1]);
        if (count != 2 && count != 4 && count != 5) continue;
        const auto size = static_cast<qsizetype>(count);
        if (bytes.mid(at + 2, size) != QByteArray(size, 'f')) continue;
        stream.seek(at + 2 + size);
        std::vector<double> parts;
        for (std::size_t i = 0; i < count; ++i) {
            const auto value = stream.number();
            if (!value) return std::nullopt;
            parts.push_back(*value);
        }
        return colorOf(bytes[at - 1], parts);
    }
    return std::nullopt;
}

} // namespace quillfern::store
