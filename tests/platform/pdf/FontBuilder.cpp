#include "platform/pdf/FontBuilder.h"

#include "support/ImageBytes.h"

#include <QString>

namespace quillfern::pdf {

namespace {

QByteArray index(const QList<QByteArray>& objects)
{
    if (objects.isEmpty()) return bigEndian16(0);
    QByteArray offsets = bigEndian16(1);
    QByteArray data;
    for (const QByteArray& object : objects) {
        data += object;
        offsets += bigEndian16(static_cast<int>(data.size()) + 1);
    }
    return bigEndian16(static_cast<int>(objects.size())) + '\2' + offsets + data;
}

/// An operand of a dictionary, always of the same length.
QByteArray operand(qsizetype value)
{
    return '\x1D' + bigEndian32(static_cast<quint32>(value));
}

QByteArray charString(const CffPlan::Glyph& glyph)
{
    const auto number = [](int value) { return '\x1C' + bigEndian16(value); };
    const int width = glyph.advance - 100;
    return number(glyph.advance) + number(50) + number(0) + '\x15' +      // rmoveto, the advance before it
           number(width) + number(glyph.height) + number(-width) + '\6' + // hlineto
           '\x0E';                                                        // endchar
}

} // namespace

QByteArray cffTable(const CffPlan& plan)
{
    QList<QByteArray> strings;
    for (const CffPlan::Glyph& glyph : plan.glyphs)
        strings.append(charString(glyph));
    const int count = static_cast<int>(plan.glyphs.size());
    const QByteArray charStrings = index(strings);
    const QByteArray privateDict("\x8B\x14", 2); // defaultWidthX 0
    const QByteArray select = "\3" + bigEndian16(1) + bigEndian16(0) + '\0' + bigEndian16(count);
    const auto privateEntry = [&](qsizetype at) {
        return operand(privateDict.size()) + operand(at) + '\x12';
    };
    const auto fontDicts = [&](qsizetype at) { return index({privateEntry(at)}); };

    struct Places
    {
        qsizetype charStrings = 0;
        qsizetype privateDict = 0;
        qsizetype select = 0;
        qsizetype fontDicts = 0;
        qsizetype charset = 0;
    };
    const auto front = [&](const Places& at) {
        QByteArray top;
        // Registry Adobe and ordering Identity are the font's first two strings, 391 and 392.
        if (plan.cidKeyed) top += '\x1C' + bigEndian16(391) + '\x1C' + bigEndian16(392) + "\x8B\x0C\x1E";
        top += operand(plan.charset.isEmpty() ? plan.predefinedCharset : at.charset) + '\x0F';
        top += operand(at.charStrings) + '\x11';
        if (plan.cidKeyed)
            top += operand(at.fontDicts) + "\x0C\x24" + operand(at.select) + "\x0C\x25";
        else
            top += privateEntry(at.privateDict);
        return QByteArray("\1\0\4\2", 4) + index({"Boxes"}) + index({top}) + index({"Adobe", "Identity"}) +
               index({});
    };
    Places at;
    at.charStrings = front(at).size();
    at.privateDict = at.charStrings + charStrings.size();
    at.select = at.privateDict + privateDict.size();
    at.fontDicts = at.select + select.size();
    at.charset = at.fontDicts + fontDicts(0).size();
    return front(at) + charStrings + privateDict + select + fontDicts(at.privateDict) + plan.charset;
}

namespace {

QByteArray characterMap(const std::map<char16_t, int>& characters)
{
    QByteArray groups;
    for (const auto& [character, glyph] : characters)
        groups += bigEndian32(character) + bigEndian32(character) + bigEndian32(static_cast<quint32>(glyph));
    return bigEndian16(0) + bigEndian16(1) + bigEndian16(3) + bigEndian16(10) + bigEndian32(12) +
           bigEndian16(12) + bigEndian16(0) + bigEndian32(static_cast<quint32>(16 + groups.size())) +
           bigEndian32(0) + bigEndian32(static_cast<quint32>(characters.size())) + groups;
}

QByteArray nameTable(const OpenTypePlan& plan)
{
    const std::map<int, QByteArray> names = {
        {1, plan.family}, {2, "Regular"}, {4, plan.family}, {6, plan.postScriptName}};
    QByteArray records;
    QByteArray strings;
    for (const auto& [id, name] : names) {
        QByteArray wide;
        for (const QChar c : QString::fromUtf8(name))
            wide += bigEndian16(c.unicode());
        records += bigEndian16(3) + bigEndian16(1) + bigEndian16(0x409) + bigEndian16(id) +
                   bigEndian16(static_cast<int>(wide.size())) + bigEndian16(static_cast<int>(strings.size()));
        strings += wide;
    }
    return bigEndian16(0) + bigEndian16(4) + bigEndian16(static_cast<int>(6 + records.size())) + records +
           strings;
}

std::map<QByteArray, QByteArray> standardTables(const OpenTypePlan& plan)
{
    const auto glyphs = plan.advances.size();
    const auto longMetrics = plan.longMetrics > 0 ? plan.longMetrics : static_cast<int>(glyphs);
    QByteArray hmtx;
    for (qsizetype i = 0; i < glyphs; ++i)
        hmtx += (i < longMetrics ? bigEndian16(plan.advances[i]) : QByteArray()) + bigEndian16(50);
    const QByteArray version = bigEndian32(0x00010000);
    return {
        {"CFF ", plan.cff},
        {"OS/2", bigEndian16(4) + bigEndian16(600) + bigEndian16(500) + bigEndian16(5) +
                     bigEndian16(plan.fsType) + QByteArray(58 - 10, '\0') + "QUIL" + bigEndian16(0x40) +
                     bigEndian16(0x20) + bigEndian16(0x7E) + bigEndian16(800) + bigEndian16(-200) +
                     bigEndian16(0) + bigEndian16(800) + bigEndian16(200) + bigEndian32(1) + bigEndian32(0) +
                     bigEndian16(480) + bigEndian16(650) + bigEndian16(0) + bigEndian16(0x20) +
                     bigEndian16(1)},
        {"cmap", characterMap(plan.characters)},
        {"head", version + version + bigEndian32(0) + bigEndian32(0x5F0F3CF5) + bigEndian16(3) +
                     bigEndian16(plan.unitsPerEm) + QByteArray(16, '\0') + bigEndian16(-20) +
                     bigEndian16(-200) + bigEndian16(1000) + bigEndian16(900) + bigEndian16(0) +
                     bigEndian16(8) + bigEndian16(2) + bigEndian32(0)},
        {"hhea", version + bigEndian16(800) + bigEndian16(-200) + bigEndian16(0) + bigEndian16(1000) +
                     QByteArray(6, '\0') + bigEndian16(1) + QByteArray(14, '\0') + bigEndian16(longMetrics)},
        {"hmtx", hmtx},
        {"maxp", bigEndian32(0x00005000) + bigEndian16(static_cast<int>(glyphs))},
        {"name", nameTable(plan)},
        {"post", bigEndian32(0x00030000) + bigEndian16(-12) + bigEndian16(0x8000) + QByteArray(24, '\0')},
    };
}

} // namespace

QByteArray openTypeFont(const OpenTypePlan& plan)
{
    auto tables = standardTables(plan);
    for (const auto& [tag, table] : plan.tables)
        tables[tag] = table;
    std::erase_if(tables, [](const auto& table) { return table.second.isEmpty(); });
    const int count = static_cast<int>(tables.size());
    QByteArray directory = "OTTO" + bigEndian16(count) + QByteArray(6, '\0');
    QByteArray data;
    for (const auto& [tag, table] : tables) {
        const auto at = static_cast<quint32>(12 + 16 * count + data.size());
        directory += tag + bigEndian32(0) + bigEndian32(at) + bigEndian32(static_cast<quint32>(table.size()));
        data += table + QByteArray((4 - table.size() % 4) % 4, '\0');
    }
    return directory + data;
}

} // namespace quillfern::pdf
