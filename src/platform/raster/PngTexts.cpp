#include "platform/raster/PngTexts.h"

#include <algorithm>
#include <libdeflate.h>
#include <memory>
#include <tiff.h>

namespace quillfern::raster {

namespace {

constexpr qsizetype largestText = 1 << 24;

struct DecompressorFree
{
    void operator()(libdeflate_decompressor* decompressor) const
    {
        libdeflate_free_decompressor(decompressor);
    }
};

/// Unpacks as much as a text may have; nothing for more, and for what is damaged.
QByteArray inflated(const QByteArray& bytes)
{
    const std::unique_ptr<libdeflate_decompressor, DecompressorFree> inflater(
        libdeflate_alloc_decompressor());
    if (!inflater) return {};
    for (qsizetype size = std::clamp<qsizetype>(bytes.size() * 4, 1 << 12, largestText);; size *= 4) {
        QByteArray text(std::min(size, largestText), Qt::Uninitialized);
        std::size_t used = 0;
        const auto result = libdeflate_zlib_decompress(inflater.get(), bytes.constData(),
                                                       static_cast<std::size_t>(bytes.size()), text.data(),
                                                       static_cast<std::size_t>(text.size()), &used);
        if (result == LIBDEFLATE_SUCCESS) return text.left(static_cast<qsizetype>(used));
        if (result != LIBDEFLATE_INSUFFICIENT_SPACE || size >= largestText) return {};
    }
}

/// The text of a chunk behind its keyword: plain, or behind the method, packed.
QByteArray textOf(const QByteArray& name, const QByteArray& rest)
{
    if (name == "tEXt") return rest;
    if (name == "zTXt") return rest.startsWith('\0') ? inflated(rest.mid(1)) : QByteArray();
    // Whether the text is packed, and how; the language; the keyword in that language.
    if (rest.size() < 2 || rest[1] != 0) return {};
    qsizetype at = 2;
    for (int skipped = 0; skipped < 2; ++skipped) {
        const qsizetype end = rest.indexOf('\0', at);
        if (end < 0) return {};
        at = end + 1;
    }
    return rest[0] == 0 ? rest.mid(at) : inflated(rest.mid(at));
}

} // namespace

bool isPngText(const QByteArray& name)
{
    return name == "tEXt" || name == "zTXt" || name == "iTXt";
}

void readPngText(const QByteArray& name, const QByteArray& chunk, PageTags& tags)
{
    static const std::map<QByteArray, std::uint16_t> names = {{"Description", TIFFTAG_IMAGEDESCRIPTION},
                                                              {"Author", TIFFTAG_ARTIST},
                                                              {"Copyright", TIFFTAG_COPYRIGHT},
                                                              {"XML:com.adobe.xmp", TIFFTAG_XMLPACKET}};
    const qsizetype end = chunk.indexOf('\0');
    const auto found = names.find(chunk.left(end));
    if (end < 0 || found == names.end()) return;
    const QByteArray text = textOf(name, chunk.mid(end + 1));
    if (!text.isEmpty()) tags.try_emplace(found->second, text);
}

} // namespace quillfern::raster
