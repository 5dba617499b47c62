#include "platform/pdf/EmbeddedFont.h"

#include "platform/system/Failure.h"

#include <QCryptographicHash>
#include <algorithm>
#include <cmath>
#include <set>

namespace quillfern::pdf {

namespace {

QByteArray hex16(unsigned value)
{
    return QByteArray::number(value, 16).rightJustified(4, '0').toUpper();
}

/// Six capitals that distinguish subsets of one font, computed from the numbers of its glyphs.
QByteArray subsetTag(const std::map<std::uint32_t, QString>& glyphs)
{
    QCryptographicHash hash(QCryptographicHash::Md5);
    for (const auto& [glyph, text] : glyphs)
        hash.addData(QByteArray::number(glyph) + ' ');
    QByteArray tag = hash.result().left(6);
    for (char& c : tag)
        c = static_cast<char>('A' + static_cast<unsigned char>(c) % 26);
    return tag;
}

QPDFObjectHandle real(double value)
{
    return QPDFObjectHandle::newReal(value, 3);
}

QPDFObjectHandle nameObject(const QByteArray& name)
{
    return QPDFObjectHandle::newName((QByteArray("/") + name).toStdString());
}

} // namespace

EmbeddedFont::EmbeddedFont(NewObjects& objects, SharedCodings& codings,
                           std::shared_ptr<const drawing::FontFace> face)
    : objects_(objects), codings_(codings), face_(std::move(face)), program_(face_),
      object_(objects.add(QPDFObjectHandle::newDictionary()))
{
}

bool EmbeddedFont::canSubset() const
{
    return codings_
        .font("?" + drawing::FontFace::identityOf(face_->rawFont()),
              [this] { return program_.subset({0}) ? std::optional(CodedFont()) : std::nullopt; })
        ->has_value();
}

bool EmbeddedFont::use(std::uint32_t glyph, const QString& text)
{
    const auto [entry, added] = glyphs_.try_emplace(glyph, text);
    if (!added && entry->second.isEmpty()) entry->second = text;
    return entry->second == text;
}

QPDFObjectHandle EmbeddedFont::widths() const
{
    // Runs of successive codes: first code [w w w ...].
    std::map<unsigned, double> byCode;
    for (const auto& [glyph, text] : glyphs_)
        byCode[code(glyph)] = advance(glyph);
    QPDFObjectHandle all = QPDFObjectHandle::newArray();
    QPDFObjectHandle run;
    unsigned next = 0;
    for (const auto& [cid, width] : byCode) {
        if (!run.isInitialized() || cid != next) {
            run = QPDFObjectHandle::newArray();
            all.appendItem(QPDFObjectHandle::newInteger(cid));
            all.appendItem(run);
        }
        run.appendItem(real(width));
        next = cid + 1;
    }
    return all;
}

QByteArray EmbeddedFont::toUnicodeMap() const
{
    QByteArrayList lines;
    for (const auto& [glyph, text] : glyphs_) {
        if (text.isEmpty()) continue;
        QByteArray line = '<' + hex16(code(glyph)) + "> <";
        for (const QChar c : text)
            line += hex16(c.unicode());
        lines.append(line + ">\n");
    }
    QByteArray map = "/CIDInit /ProcSet findresource begin\n12 dict begin\nbegincmap\n"
                     "/CIDSystemInfo << /Registry (Adobe) /Ordering (UCS) /Supplement 0 >> def\n"
                     "/CMapName /Adobe-Identity-UCS def\n/CMapType 2 def\n"
                     "1 begincodespacerange\n<0000> <FFFF>\nendcodespacerange\n";
    constexpr qsizetype mostInBlock = 100;
    for (qsizetype i = 0; i < lines.size(); i += mostInBlock) {
        const QByteArrayList block = lines.mid(i, mostInBlock);
        map += QByteArray::number(block.size()) + " beginbfchar\n" + block.join() + "endbfchar\n";
    }
    return map + "endcmap\nCMapName currentdict /CMap defineresource pop\nend\nend\n";
}

void EmbeddedFont::addFigures()
{
    const QString figures = QStringLiteral("0123456789");
    const auto glyphs = face_->rawFont().glyphIndexesForString(figures);
    const bool showsFigure = std::any_of(glyphs.begin(), glyphs.end(), [this](quint32 glyph) {
        return glyph != 0 && glyphs_.contains(glyph);
    });
    if (!showsFigure || glyphs.size() != figures.size()) return;
    for (qsizetype i = 0; i < glyphs.size(); ++i)
        if (glyphs[i] != 0) (void)use(glyphs[i], figures.mid(i, 1));
}

QByteArray EmbeddedFont::key() const
{
    QByteArray key = drawing::FontFace::identityOf(face_->rawFont());
    for (const auto& [glyph, text] : glyphs_)
        key += QByteArray::number(glyph) + '=' + text.toUtf8() + '\0';
    return key;
}

std::optional<CodedFont> EmbeddedFont::coded() const
{
    std::set<std::uint32_t> wanted{0};
    for (const auto& [glyph, text] : glyphs_)
        wanted.insert(glyph);
    const auto subset = program_.subset(wanted);
    if (!subset) return std::nullopt;
    // One bit a code, the first in the highest bit.
    QByteArray cidSet;
    for (const std::uint32_t glyph : subset->glyphs) {
        const unsigned cid = code(glyph);
        if (cidSet.size() <= static_cast<qsizetype>(cid / 8)) cidSet.resize(cid / 8 + 1, '\0');
        char& byte = cidSet[static_cast<qsizetype>(cid / 8)];
        byte = static_cast<char>(static_cast<unsigned char>(byte) | 0x80U >> (cid % 8));
    }
    return CodedFont{deflatedBytes(subset->program).toStdString(),
                     static_cast<std::size_t>(subset->program.size()), deflatedBytes(cidSet).toStdString(),
                     deflatedBytes(toUnicodeMap()).toStdString()};
}

namespace {

QPDFObjectHandle deflated()
{
    return QPDFObjectHandle::newDictionary({{"/Filter", QPDFObjectHandle::newName("/FlateDecode")}});
}

} // namespace

QPDFObjectHandle EmbeddedFont::descriptor(const QByteArray& name, const CodedFont& font)
{
    const FontMetrics& metrics = program_.metrics();
    QPDFObjectHandle box = QPDFObjectHandle::newArray();
    for (const double edge : metrics.boundingBox)
        box.appendItem(real(edge));

    QPDFObjectHandle kind = deflated();
    if (program_.isCff())
        kind.replaceKey("/Subtype", QPDFObjectHandle::newName("/CIDFontType0C"));
    else
        kind.replaceKey("/Length1", QPDFObjectHandle::newInteger(static_cast<long long>(font.programLength)));
    const QPDFObjectHandle file = objects_.addStream(font.program, kind);

    constexpr int symbolic = 4;
    constexpr int italic = 64;
    auto dictionary = QPDFObjectHandle::newDictionary(
        {{"/Type", QPDFObjectHandle::newName("/FontDescriptor")},
         {"/FontName", nameObject(name)},
         {"/Flags", QPDFObjectHandle::newInteger(symbolic | (metrics.italicAngle != 0 ? italic : 0))},
         {"/FontBBox", box},
         {"/ItalicAngle", real(metrics.italicAngle)},
         {"/Ascent", real(metrics.ascent)},
         {"/Descent", real(metrics.descent)},
         {"/CapHeight", real(metrics.capHeight)},
         // The usual estimate of the stems' width from the weight class.
         {"/StemV", QPDFObjectHandle::newInteger(std::lround(50 + std::pow(metrics.weight / 65.0, 2)))},
         {program_.isCff() ? "/FontFile3" : "/FontFile2", file},
         {"/CIDSet", objects_.addStream(font.cidSet, deflated())}});
    return objects_.add(dictionary);
}

void EmbeddedFont::finish()
{
    addFigures();
    const auto font = codings_.font(key(), [this] { return coded(); });
    if (!*font) throw Failure(QT_TRANSLATE_NOOP("quillfern::Failure", "A font cannot be embedded."));

    const QByteArray name = subsetTag(glyphs_) + '+' + program_.postScriptName();
    auto descendant = QPDFObjectHandle::newDictionary(
        {{"/Type", QPDFObjectHandle::newName("/Font")},
         {"/Subtype", QPDFObjectHandle::newName(program_.isCff() ? "/CIDFontType0" : "/CIDFontType2")},
         {"/BaseFont", nameObject(name)},
         {"/CIDSystemInfo",
          QPDFObjectHandle::newDictionary({{"/Registry", QPDFObjectHandle::newString("Adobe")},
                                           {"/Ordering", QPDFObjectHandle::newString("Identity")},
                                           {"/Supplement", QPDFObjectHandle::newInteger(0)}})},
         {"/DW", QPDFObjectHandle::newInteger(1000)},
         {"/W", widths()},
         {"/FontDescriptor", descriptor(name, **font)}});
    if (!program_.isCff()) descendant.replaceKey("/CIDToGIDMap", QPDFObjectHandle::newName("/Identity"));

    object_.replaceKey("/Type", QPDFObjectHandle::newName("/Font"));
    object_.replaceKey("/Subtype", QPDFObjectHandle::newName("/Type0"));
    object_.replaceKey("/BaseFont", nameObject(program_.isCff() ? name + "-Identity-H" : name));
    object_.replaceKey("/Encoding", QPDFObjectHandle::newName("/Identity-H"));
    QPDFObjectHandle descendants = QPDFObjectHandle::newArray();
    descendants.appendItem(objects_.add(descendant));
    object_.replaceKey("/DescendantFonts", descendants);
    object_.replaceKey("/ToUnicode", objects_.addStream((*font)->toUnicode, deflated()));
}

} // namespace quillfern::pdf
