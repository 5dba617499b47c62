#include "platform/system/NativePath.h"

#include <algorithm>

namespace quillfern {

namespace {

constexpr char16_t firstEscape = 0xDC80;
constexpr char16_t lastEscape = 0xDCFF;

qsizetype sequenceLength(char lead)
{
    const auto byte = static_cast<unsigned char>(lead);
    if (byte < 0x80) return 1;
    if (byte >= 0xC2 && byte < 0xE0) return 2;
    if (byte >= 0xE0 && byte < 0xF0) return 3;
    return byte >= 0xF0 && byte < 0xF5 ? 4 : 0;
}

/// Whether the unit at `index` stands for a byte; the second half of a pair does not.
bool isEscape(const QString& text, qsizetype index)
{
    const char16_t unit = text[index].unicode();
    return unit >= firstEscape && unit <= lastEscape && (index == 0 || !text[index - 1].isHighSurrogate());
}

qsizetype nextEscape(const QString& text, qsizetype from)
{
    while (from < text.size() && !isEscape(text, from))
        ++from;
    return from;
}

} // namespace

QString pathText(const QByteArray& bytes)
{
    if (QByteArrayView(bytes).isValidUtf8()) return QString::fromUtf8(bytes);
    QString text;
    for (qsizetype i = 0; i < bytes.size();) {
        const qsizetype length = sequenceLength(bytes[i]);
        const QByteArrayView sequence = QByteArrayView(bytes).sliced(i, std::min(length, bytes.size() - i));
        if (length > 0 && sequence.size() == length && sequence.isValidUtf8()) {
            text += QString::fromUtf8(sequence);
            i += length;
        } else {
            text += QChar(static_cast<char16_t>(0xDC00 + static_cast<unsigned char>(bytes[i++])));
        }
    }
    return text;
}

QByteArray nativePath(const QString& path)
{
    QByteArray bytes;
    for (qsizetype i = 0; i < path.size();) {
        const qsizetype escape = nextEscape(path, i);
        bytes += QStringView(path).mid(i, escape - i).toUtf8();
        if (escape < path.size()) bytes += static_cast<char>(path[escape].unicode() & 0xFF);
        i = escape + 1;
    }
    return bytes;
}

QString readableName(QString path)
{
    for (qsizetype i = 0; i < path.size(); ++i)
        if (isEscape(path, i)) path[i] = QChar(QChar::ReplacementCharacter);
    return path;
}

QString printable(const QString& text)
{
    QString line;
    for (const QChar c : text) {
        const char16_t unit = c.unicode();
        const bool breaksLines = unit == QChar::LineSeparator || unit == QChar::ParagraphSeparator;
        if (c == u'\n')
            line += QStringLiteral("\\n");
        else if (c == u'\t')
            line += QStringLiteral("\\t");
        else if (c == u'\r')
            line += QStringLiteral("\\r");
        else if (c.category() == QChar::Other_Control)
            line += QStringLiteral("\\x%1").arg(unit, 2, 16, QLatin1Char('0'));
        else if (breaksLines)
            line += QStringLiteral("\\u%1").arg(unit, 4, 16, QLatin1Char('0'));
        else
            line += c;
    }
    return line;
}

} // namespace quillfern
