#include "platform/pdf/FontProgram.h"

#include "platform/pdf/CffCharset.h"

#include <QtEndian>
#include <algorithm>
#include <hb-ot.h>
#include <hb-subset.h>
#include <map>
#include <memory>

namespace quillfern::pdf {

namespace {

template <class T, void (*Destroy)(T*)>
struct Deleter
{
    void operator()(T* object) const { Destroy(object); }
};
using HbBlob = std::unique_ptr<hb_blob_t, Deleter<hb_blob_t, hb_blob_destroy>>;
using HbFace = std::unique_ptr<hb_face_t, Deleter<hb_face_t, hb_face_destroy>>;
using HbInput = std::unique_ptr<hb_subset_input_t, Deleter<hb_subset_input_t, hb_subset_input_destroy>>;
using HbPlan = std::unique_ptr<hb_subset_plan_t, Deleter<hb_subset_plan_t, hb_subset_plan_destroy>>;

int unsigned16(const QByteArray& table, qsizetype offset)
{
    return offset + 2 <= table.size() ? qFromBigEndian<quint16>(table.constData() + offset) : 0;
}

int signed16(const QByteArray& table, qsizetype offset)
{
    return static_cast<qint16>(unsigned16(table, offset));
}

QByteArray copyOf(hb_blob_t* blob)
{
    unsigned length = 0;
    const char* data = hb_blob_get_data(blob, &length);
    return {data, static_cast<qsizetype>(length)};
}

/// The tables that a HarfBuzz face was given. While HarfBuzz makes a subset, it releases a table whose glyphs
/// it still reads afterwards, so all tables are kept until the face is destroyed.
struct Tables
{
    const drawing::FontFace& face;
    std::map<hb_tag_t, QByteArray> given;
};

hb_blob_t* tableBlob(hb_face_t*, hb_tag_t tag, void* user)
{
    auto& tables = *static_cast<Tables*>(user);
    auto found = tables.given.find(tag);
    if (found == tables.given.end()) {
        char name[5] = {};
        hb_tag_to_string(tag, name);
        found = tables.given.emplace(tag, tables.face.table(name)).first;
        // The library reads one entry beyond a plain charset, which may be the last thing in its table.
        if (tag == HB_TAG('C', 'F', 'F', ' ') && !found->second.isEmpty()) found->second.append(2, '\0');
    }
    const QByteArray& bytes = found->second;
    if (bytes.isEmpty()) return hb_blob_get_empty();
    return hb_blob_create(bytes.constData(), static_cast<unsigned>(bytes.size()), HB_MEMORY_MODE_READONLY,
                          nullptr, nullptr);
}

HbFace harfBuzzFace(const drawing::FontFace& face)
{
    return HbFace(hb_face_create_for_tables(tableBlob, new Tables{face, {}},
                                            [](void* tables) { delete static_cast<Tables*>(tables); }));
}

/// The licence bits of the OS/2 table, fsType: 2 restricted, 0x100 no subsetting, 0x200 bitmaps only.
bool licenceForbids(const QByteArray& os2)
{
    const int type = unsigned16(os2, 8);
    return (type & 0xF) == 2 || (type & 0x300) != 0;
}

} // namespace

FontProgram::FontProgram(std::shared_ptr<const drawing::FontFace> face) : face_(std::move(face))
{
    const auto has = [this](const char* tag) { return !face_->table(tag).isEmpty(); };
    cff_ = has("CFF ");
    hmtx_ = face_->table("hmtx");
    embeddable_ = !hmtx_.isEmpty() && has("head") && has("hhea") && has("maxp") && (cff_ || has("glyf")) &&
                  !has("fvar") && !has("CBDT") && !has("sbix") && !has("COLR") && !has("SVG ") &&
                  !licenceForbids(face_->table("OS/2"));
    if (!embeddable_) return;
    readMetrics();
    if (cff_) {
        auto charset = cidsByGlyph(face_->table("CFF "));
        if (charset)
            charset_ = std::move(*charset);
        else
            embeddable_ = false;
    }
}

void FontProgram::readMetrics()
{
    const double scale = 1000.0 / face_->unitsPerEm();
    const QByteArray head = face_->table("head");
    for (int i = 0; i < 4; ++i)
        metrics_.boundingBox[i] = signed16(head, 36 + 2 * i) * scale;
    const QByteArray hhea = face_->table("hhea");
    metrics_.ascent = signed16(hhea, 4) * scale;
    metrics_.descent = signed16(hhea, 6) * scale;
    longMetrics_ = unsigned16(hhea, 34);
    const QByteArray os2 = face_->table("OS/2");
    if (unsigned16(os2, 0) >= 2) metrics_.capHeight = signed16(os2, 88) * scale;
    if (metrics_.capHeight <= 0) metrics_.capHeight = metrics_.ascent * 0.8;
    if (!os2.isEmpty()) metrics_.weight = unsigned16(os2, 4);
    const QByteArray post = face_->table("post");
    metrics_.italicAngle = signed16(post, 4) + unsigned16(post, 6) / 65536.0;
}

QByteArray FontProgram::postScriptName() const
{
    const HbFace face = harfBuzzFace(*face_);
    char name[64] = {};
    unsigned size = sizeof name;
    hb_ot_name_get_utf8(face.get(), HB_OT_NAME_ID_POSTSCRIPT_NAME, HB_LANGUAGE_INVALID, &size, name);
    QByteArray text(name);
    if (text.isEmpty()) text = face_->rawFont().familyName().toUtf8();
    // Only characters that need no escape in a name, for any reader.
    text.removeIf(
        [](char c) { return !(c == '-' || (c >= '0' && c <= '9') || ((c | 32) >= 'a' && (c | 32) <= 'z')); });
    return text.isEmpty() ? QByteArray("Font") : text;
}

std::uint16_t FontProgram::cid(std::uint32_t glyph) const
{
    if (charset_.empty()) return static_cast<std::uint16_t>(glyph);
    return glyph < charset_.size() ? charset_[glyph] : std::uint16_t{0};
}

double FontProgram::advance(std::uint32_t glyph) const
{
    if (longMetrics_ == 0) return 0;
    const auto index = std::min<qsizetype>(glyph, longMetrics_ - 1);
    return unsigned16(hmtx_, index * 4) * 1000.0 / face_->unitsPerEm();
}

std::optional<FontProgram::Subset> FontProgram::subset(const std::set<std::uint32_t>& glyphs) const
{
    const HbFace face = harfBuzzFace(*face_);
    const HbInput input(hb_subset_input_create_or_fail());
    if (!input) return std::nullopt;
    for (const std::uint32_t glyph : glyphs)
        hb_set_add(hb_subset_input_glyph_set(input.get()), glyph);
    hb_subset_input_set_flags(input.get(), HB_SUBSET_FLAGS_RETAIN_GIDS | HB_SUBSET_FLAGS_NO_HINTING);
    hb_set_t* drop = hb_subset_input_set(input.get(), HB_SUBSET_SETS_DROP_TABLE_TAG);
    for (const char* tag : {"GSUB", "GPOS", "GDEF", "BASE", "JSTF", "MATH", "kern", "kerx", "morx",
                            "mort", "name", "cmap", "OS/2", "post", "DSIG", "gasp", "hdmx", "LTSH",
                            "VDMX", "PCLT", "vhea", "vmtx", "VORG", "FFTM", "meta", "STAT"})
        hb_set_add(drop, hb_tag_from_string(tag, -1));

    const HbPlan plan(hb_subset_plan_create_or_fail(face.get(), input.get()));
    if (!plan) return std::nullopt;
    const HbFace result(hb_subset_plan_execute_or_fail(plan.get()));
    if (!result) return std::nullopt;

    Subset subset;
    const HbBlob blob(cff_ ? hb_face_reference_table(result.get(), HB_TAG('C', 'F', 'F', ' '))
                           : hb_face_reference_blob(result.get()));
    subset.program = copyOf(blob.get());
    if (subset.program.isEmpty()) return std::nullopt;
    const hb_map_t* kept = hb_subset_plan_old_to_new_glyph_mapping(plan.get());
    const auto count = static_cast<std::uint32_t>(unsigned16(face_->table("maxp"), 4));
    for (std::uint32_t glyph = 0; glyph < count; ++glyph)
        if (hb_map_has(kept, glyph)) subset.glyphs.insert(glyph);
    return subset;
}

} // namespace quillfern::pdf
