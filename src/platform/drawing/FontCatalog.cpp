#include "platform/drawing/FontCatalog.h"

#include <QFontDatabase>
#include <QFontInfo>
#include <cstdlib>
#include <optional>

#ifdef QUILLFERN_HAVE_FONTCONFIG
#include <fontconfig/fontconfig.h>
#endif

namespace quillfern::drawing {

namespace {

struct Member
{
    QString style;
    int weight = QFont::Normal;
    bool italic = false;
};

std::vector<Member> membersOf(const QString& family)
{
    std::vector<Member> members;
    for (const QString& style : QFontDatabase::styles(family))
        members.push_back(
            {style, QFontDatabase::weight(family, style), QFontDatabase::italic(family, style)});
    return members;
}

bool isBold(const Member& member)
{
    return member.weight >= QFont::DemiBold;
}

/// The weight among the members of one slant that lies nearest to `wanted`; nothing when there is none.
std::optional<int> nearestWeight(const std::vector<Member>& members, bool italic, bool bold)
{
    const int wanted = bold ? QFont::Bold : QFont::Normal;
    std::optional<int> best;
    for (const Member& member : members) {
        if (member.italic != italic || (bold && !isBold(member))) continue;
        if (!best || std::abs(member.weight - wanted) < std::abs(*best - wanted)) best = member.weight;
    }
    return best;
}

#ifdef QUILLFERN_HAVE_FONTCONFIG
QString substituteFor(const QString& family)
{
    FcPattern* pattern = FcPatternCreate();
    const QByteArray name = family.toUtf8();
    FcPatternAddString(pattern, FC_FAMILY, reinterpret_cast<const FcChar8*>(name.constData()));
    FcPatternAddBool(pattern, FC_OUTLINE, FcTrue);
    FcConfigSubstitute(nullptr, pattern, FcMatchPattern);
    FcDefaultSubstitute(pattern);
    FcResult result = FcResultNoMatch;
    FcPattern* match = FcFontMatch(nullptr, pattern, &result);
    QString found;
    FcChar8* text = nullptr;
    if (match && FcPatternGetString(match, FC_FAMILY, 0, &text) == FcResultMatch)
        found = QString::fromUtf8(reinterpret_cast<const char*>(text));
    if (match) FcPatternDestroy(match);
    FcPatternDestroy(pattern);
    return found;
}
#else
QString substituteFor(const QString& family)
{
    return QFontInfo(QFont(family)).family();
}
#endif

} // namespace

void FontCatalog::preferEmbeddableFonts()
{
#ifdef QUILLFERN_HAVE_FONTCONFIG
    static constexpr char rule[] =
        R"(<?xml version="1.0"?><!DOCTYPE fontconfig SYSTEM "fonts.dtd"><fontconfig>
<selectfont>
<rejectfont><pattern><patelt name="fontformat"><string>Type 1</string></patelt></pattern></rejectfont>
<rejectfont><pattern><patelt name="scalable"><bool>false</bool></patelt>
                     <patelt name="color"><bool>false</bool></patelt></pattern></rejectfont>
</selectfont></fontconfig>)";
    FcConfig* config = FcInitLoadConfig();
    if (!config) return;
    if (FcConfigParseAndLoadFromMemory(config, reinterpret_cast<const FcChar8*>(rule), FcFalse) &&
        FcConfigBuildFonts(config)) {
        FcConfigSetCurrent(config);
    } else {
        FcConfigDestroy(config);
    }
#endif
}

QStringList FontCatalog::families() const
{
    return QFontDatabase::families();
}

bool FontCatalog::hasBold(const QString& family) const
{
    const auto members = membersOf(family);
    return std::any_of(members.begin(), members.end(), isBold);
}

bool FontCatalog::hasItalic(const QString& family) const
{
    const auto members = membersOf(family);
    return std::any_of(members.begin(), members.end(), [](const Member& member) { return member.italic; });
}

QString FontCatalog::resolveFamily(const QString& family) const
{
    if (!family.isEmpty() && QFontDatabase::hasFamily(family)) return family;
    for (const QString& wanted : {family, QStringLiteral("Helvetica"), QStringLiteral("sans-serif")}) {
        if (wanted.isEmpty()) continue;
        const QString found = substituteFor(wanted);
        if (QFontDatabase::hasFamily(found)) return found;
    }
    const QStringList all = families();
    return all.isEmpty() ? family : all.front();
}

QFont FontCatalog::font(const FontSpec& spec, int pixelSize) const
{
    const QString family = resolveFamily(spec.family);
    const auto members = membersOf(family);

    // First the weight, then the slant on top of it; a step that leads to no member is not taken.
    bool italic = false;
    bool bold = false;
    if (spec.bold && nearestWeight(members, italic, true)) bold = true;
    if (spec.italic && nearestWeight(members, true, bold)) italic = true;
    // When both are wanted, a family whose only bold member is italic gives that member.
    if (spec.bold && spec.italic && !bold && nearestWeight(members, true, true)) bold = italic = true;

    QFont font(family);
    font.setPixelSize(pixelSize);
    font.setHintingPreference(QFont::PreferNoHinting);
    if (const auto weight = nearestWeight(members, italic, bold))
        font.setWeight(static_cast<QFont::Weight>(*weight));
    else if (!members.empty())
        font.setWeight(static_cast<QFont::Weight>(members.front().weight)); // a family of italics only
    font.setItalic(italic || (!members.empty() && !nearestWeight(members, false, false)));
    return font;
}

} // namespace quillfern::drawing
