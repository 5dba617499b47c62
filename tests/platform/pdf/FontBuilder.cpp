#include "platform/pdf/FontBuilder.h"

#include <QString>
#include <QtEndian>

namespace quillfern::pdf {

QByteArray bytes16(int value)
{
    QByteArray bytes(2, '\0');
    qToBigEndian(static_cast<quint16>(value), bytes.data());
    return bytes;
}

QByteArray bytes32(quint32 value)
{
    QByteArray bytes(4, '\0');
    qToBigEndian(value, bytes.data());
    return bytes;
}

namespace {

QByteArray index(const QList<QByteArray>& objects)
{
    if (objects.isEmpty()) return bytes16(0);
    QByteArray offsets = bytes16(1);
    QByteArray data;
    for (const QByteArray& object : objects) {
        data += object;
        offsets += bytes16(static_cast<int>(data.size()) + 1);
    }
    return bytes16(static_cast<int>(objects.size())) + '\2' + offsets + data;
}

/// An operand of a dictionary, always of the same length.
QByteArray operand(qsizetype value)
{
    return '\x1D' + bytes32(static_cast<quint32>(value));
}

QByteArray charString(const CffPlan::Glyph& glyph)
{
    const auto number = [](int value) { return '\x1C' + bytes16(value); };
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
    const QByteArray select = "\3" + bytes16(1) + bytes16(0) + '\0' + bytes16(count);
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
        if (plan.cidKeyed) top += '\x1C' + bytes16(391) + '\x1C' + bytes16(392) + "\x8B\x0C\x1E";
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
        groups += bytes32(character) + bytes32(character) + bytes32(static_cast<quint32>(glyph));
    return bytes16(0) + bytes16(1) + bytes16(3) + bytes16(10) + bytes32(12) + bytes16(12) + bytes16(0) +
           bytes32(static_cast<quint32>(16 + groups.size())) + bytes32(0) +
           bytes32(static_cast<quint32>(characters.size())) + groups;
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
            wide += bytes16(c.unicode());
        records += bytes16(3) + bytes16(1) + bytes16(0x409) + bytes16(id) +
                   bytes16(static_cast<int>(wide.size())) + bytes16(static_cast<int>(strings.size()));
        strings += wide;
    }
    return bytes16(0) + bytes16(4) + bytes16(static_cast<int>(6 + records.size())) + records + strings;
}

std::map<QByteArray, QByteArray> standardTables(const OpenTypePlan& plan)
{
    const auto glyphs = plan.advances.size();
    const auto longMetrics = plan.longMetrics > 0 ? plan.longMetrics : static_cast<int>(glyphs);
    QByteArray hmtx;
    for (qsizetype i = 0; i < glyphs; ++i)
        hmtx += (i < longMetrics ? bytes16(plan.advances[i]) : QByteArray()) + bytes16(50);
    const QByteArray version = bytes32(0x00010000);
    return {
        {"CFF ", plan.cff},
        {"OS/2", bytes16(4) + bytes16(600) + bytes16(500) + bytes16(5) + bytes16(plan.fsType) +
                     QByteArray(58 - 10, '\0') + "QUIL" + bytes16(0x40) + bytes16(0x20) + bytes16(0x7E) +
                     bytes16(800) + bytes16(-200) + bytes16(0) + bytes16(800) + bytes16(200) + bytes32(1) +
                     bytes32(0) + bytes16(480) + bytes16(650) + bytes16(0) + bytes16(0x20) + bytes16(1)},
        {"cmap", characterMap(plan.characters)},
        {"head", version + version + bytes32(0) + bytes32(0x5F0F3CF5) + bytes16(3) +
                     bytes16(plan.unitsPerEm) + QByteArray(16, '\0') + bytes16(-20) + bytes16(-200) +
                     bytes16(1000) + bytes16(900) + bytes16(0) + bytes16(8) + bytes16(2) + bytes32(0)},
        {"hhea", version + bytes16(800) + bytes16(-200) + bytes16(0) + bytes16(1000) + QByteArray(6, '\0') +
                     bytes16(1) + QByteArray(14, '\0') + bytes16(longMetrics)},
        {"hmtx", hmtx},
        {"maxp", bytes32(0x00005000) + bytes16(static_cast<int>(glyphs))},
        {"name", nameTable(plan)},
        {"post", bytes32(0x00030000) + bytes16(-12) + bytes16(0x8000) + QByteArray(24, '\0')},
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
    QByteArray directory = "OTTO" + bytes16(count) + QByteArray(6, '\0');
    QByteArray data;
    for (const auto& [tag, table] : tables) {
        const auto at = static_cast<quint32>(12 + 16 * count + data.size());
        directory += tag + bytes32(0) + bytes32(at) + bytes32(static_cast<quint32>(table.size()));
        data += table + QByteArray((4 - table.size() % 4) % 4, '\0');
    }
    return directory + data;
}

} // namespace quillfern::pdf
