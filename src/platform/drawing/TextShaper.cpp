#include "platform/drawing/TextShaper.h"

#include "platform/system/Failure.h"

#include <QGlyphRun>
#include <QTextLayout>
#include <QTextOption>
#include <algorithm>
#include <array>
#include <cmath>

namespace quillfern::drawing {

namespace {

/// In characters: more than a page can show in one line, and not far below what the layout's fixed-point
/// numbers can hold.
constexpr qsizetype longestLine = 8000;
constexpr qsizetype mostCachedTexts = 512;
constexpr qsizetype mostPatterns = 256;
constexpr double widestLine = 33'000'000;

bool isDigit(QChar c)
{
    return c >= QLatin1Char('0') && c <= QLatin1Char('9');
}

QString withAllDigits(QString text, char digit)
{
    for (QChar& c : text)
        if (isDigit(c)) c = QLatin1Char(digit);
    return text;
}

QStringList linesOf(const QString& text)
{
    QStringList lines;
    QString line;
    for (const QChar c : text) {
        if (c == QLatin1Char('\n') || c == QChar::LineSeparator || c == QChar::ParagraphSeparator) {
            lines.append(line);
            line.clear();
        } else if (line.size() < longestLine) {
            line.append(c.category() == QChar::Other_Control ? QChar(QLatin1Char(' ')) : c);
        }
    }
    lines.append(line);
    return lines;
}

/// The layout of one text in which figures may be exchanged without moving anything.
struct Pattern
{
    ShapedText text; ///< with every figure a 0
    /// For every figure in reading order of the glyphs: its place and the glyph of each of the ten figures.
    struct Place
    {
        std::size_t run = 0;
        std::size_t glyph = 0;
        std::array<quint32, 10> glyphs = {};
    };
    std::vector<Place> places;
};

bool sameButForFigures(const ShapedText& a, const ShapedText& b)
{
    const auto near = [](double x, double y) { return std::abs(x - y) < 1e-6; };
    if (a.runs.size() != b.runs.size() || !near(a.width, b.width) || !near(a.height, b.height)) return false;
    for (std::size_t r = 0; r < a.runs.size(); ++r) {
        const ShapedRun& x = a.runs[r];
        const ShapedRun& y = b.runs[r];
        if (x.face != y.face || x.glyphs.size() != y.glyphs.size()) return false;
        for (std::size_t g = 0; g < x.glyphs.size(); ++g) {
            const bool figure = x.glyphs[g].text.size() == 1 && isDigit(x.glyphs[g].text[0]);
            if (!figure && x.glyphs[g].glyph != y.glyphs[g].glyph) return false;
            if (!near(x.glyphs[g].x, y.glyphs[g].x) || !near(x.glyphs[g].y, y.glyphs[g].y)) return false;
        }
    }
    return true;
}

} // namespace

struct TextShaper::FontEntry
{
    FontSpec spec;
    QFont font; ///< at one pixel per unit of its primary face
    double unitsPerEm = 1000;
    std::optional<bool> tabular;
    QHash<QString, std::shared_ptr<const ShapedText>> texts;
    QHash<QString, std::shared_ptr<const Pattern>> patterns; ///< null where figures cannot be exchanged
};

TextShaper::TextShaper() = default;
TextShaper::~TextShaper() = default;

TextShaper::FontEntry& TextShaper::entryFor(const FontSpec& font)
{
    for (const auto& entry : entries_)
        if (entry->spec == font) return *entry;
    auto entry = std::make_unique<FontEntry>();
    entry->spec = font;
    const QRawFont primary = QRawFont::fromFont(catalog_.font(font, 1000));
    if (primary.isValid() && primary.unitsPerEm() > 0) entry->unitsPerEm = primary.unitsPerEm();
    entry->font = catalog_.font(font, static_cast<int>(std::lround(entry->unitsPerEm)));
    entries_.push_back(std::move(entry));
    return *entries_.back();
}

std::shared_ptr<const FontFace> TextShaper::faceFor(const QRawFont& font)
{
    // Without any installed font the layout gives boxes, whose font claims to be valid, has no tables and
    // crashes when it is asked for its name. Fonts without tables are left out by preferEmbeddableFonts().
    if (!font.isValid() || font.fontTable("head").isEmpty())
        throw Failure(QT_TRANSLATE_NOOP("quillfern::Failure",
                                        "No font is installed with which the text could be drawn."));
    const QByteArray identity = FontFace::identityOf(font);
    std::shared_ptr<const FontFace>& face = faces_[identity];
    if (!face) face = std::make_shared<const FontFace>(font);
    return face;
}

namespace {

/// The glyphs of one line with the characters that each of them stands for. The layout only returns the
/// glyphs of a range of characters. All characters of one cluster give the same glyphs, so asking for one
/// character at a time finds the clusters.
template <class FaceFor>
void collectGlyphs(const QTextLine& line, const QString& text, double scale, double left, double top,
                   FaceFor faceFor, ShapedText& shaped)
{
    struct Cluster
    {
        QList<QGlyphRun> runs;
        QString text;
    };
    std::vector<Cluster> clusters;
    for (qsizetype i = 0; i < text.size();) {
        const qsizetype units = text[i].isHighSurrogate() && i + 1 < text.size() ? 2 : 1;
        QList<QGlyphRun> runs = line.glyphRuns(static_cast<int>(i), static_cast<int>(units));
        const QString characters = text.mid(i, units);
        i += units;
        const bool sameCluster = !clusters.empty() && !runs.isEmpty() && !clusters.back().runs.isEmpty() &&
                                 runs.front().glyphIndexes() == clusters.back().runs.front().glyphIndexes() &&
                                 runs.front().positions() == clusters.back().runs.front().positions();
        if (sameCluster || (runs.isEmpty() && !clusters.empty()))
            clusters.back().text += characters;
        else
            clusters.push_back({std::move(runs), characters});
    }

    QRawFont lastFont;
    std::shared_ptr<const FontFace> lastFace;
    for (const Cluster& cluster : clusters) {
        bool first = true;
        for (const QGlyphRun& run : cluster.runs) {
            if (!lastFace || run.rawFont() != lastFont) {
                lastFont = run.rawFont();
                lastFace = faceFor(lastFont);
            }
            if (shaped.runs.empty() || shaped.runs.back().face != lastFace)
                shaped.runs.push_back({lastFace, {}});
            const QList<quint32> glyphs = run.glyphIndexes();
            const QList<QPointF> positions = run.positions();
            for (qsizetype g = 0; g < glyphs.size(); ++g) {
                shaped.runs.back().glyphs.push_back({glyphs[g], (positions[g].x() - left) * scale,
                                                     (positions[g].y() + top) * scale,
                                                     first ? cluster.text : QString()});
                first = false;
            }
        }
    }
}

void centreLines(ShapedText& shaped, const std::vector<std::pair<std::size_t, std::size_t>>& lineRuns)
{
    for (std::size_t i = 0; i < shaped.lines.size(); ++i) {
        const double shift = (shaped.width - shaped.lines[i].width) / 2;
        shaped.lines[i].x += shift;
        for (std::size_t r = lineRuns[i].first; r < lineRuns[i].second; ++r)
            for (ShapedGlyph& glyph : shaped.runs[r].glyphs)
                glyph.x += shift;
    }
}

} // namespace

ShapedText TextShaper::layOut(const QString& text, FontEntry& entry)
{
    ++layoutCount_;
    ShapedText shaped;
    const double scale = 1 / entry.unitsPerEm;
    QTextOption option;
    option.setUseDesignMetrics(true);
    option.setWrapMode(QTextOption::NoWrap);
    option.setAlignment(Qt::AlignLeft | Qt::AlignAbsolute);

    double top = 0;
    std::vector<std::pair<std::size_t, std::size_t>> lineRuns;
    for (const QString& lineText : linesOf(text)) {
        QTextLayout layout(lineText, entry.font);
        layout.setTextOption(option);
        layout.setCacheEnabled(true);
        layout.beginLayout();
        QTextLine line = layout.createLine();
        if (line.isValid()) line.setLineWidth(widestLine);
        layout.endLayout();
        if (!line.isValid()) continue;
        const QRectF natural = line.naturalTextRect();
        const std::size_t firstRun = shaped.runs.size();
        ShapedText alone; // on its own, so that no run reaches over the end of a line
        collectGlyphs(
            line, lineText, scale, natural.left(), top, [this](const QRawFont& f) { return faceFor(f); },
            alone);
        std::move(alone.runs.begin(), alone.runs.end(), std::back_inserter(shaped.runs));
        lineRuns.emplace_back(firstRun, shaped.runs.size());
        shaped.lines.push_back({0, (top + line.ascent()) * scale, natural.width() * scale});
        shaped.width = std::max(shaped.width, natural.width() * scale);
        top += line.ascent() + line.descent();
    }
    shaped.height = top * scale;
    centreLines(shaped, lineRuns);

    const QRawFont primary = QRawFont::fromFont(entry.font);
    shaped.lineThickness = std::max(primary.lineThickness() * scale, 0.02);
    shaped.underlineOffset = std::max(primary.underlinePosition() * scale, shaped.lineThickness);
    shaped.strikeOffset = (primary.xHeight() > 0 ? primary.xHeight() : primary.ascent() * 0.6) * scale / 2;
    return shaped;
}

bool TextShaper::figuresAreTabular(FontEntry& entry)
{
    if (entry.tabular) return *entry.tabular;
    // Every ordered pair of figures stands somewhere in this text; when all steps are equal, no pair is
    // kerned.
    QString pairs;
    for (int a = 0; a < 10; ++a)
        for (int b = a; b < 10; ++b) {
            pairs += QString::number(a);
            pairs += QString::number(b);
            pairs += QString::number(a);
        }
    const ShapedText shaped = layOut(pairs, entry);
    entry.tabular =
        shaped.runs.size() == 1 && shaped.runs[0].glyphs.size() == static_cast<std::size_t>(pairs.size());
    if (*entry.tabular) {
        const auto& glyphs = shaped.runs[0].glyphs;
        std::array<std::optional<quint32>, 10> figures;
        const double step = shaped.width / static_cast<double>(glyphs.size());
        for (std::size_t i = 0; i < glyphs.size() && *entry.tabular; ++i) {
            auto& figure = figures[static_cast<std::size_t>(pairs[static_cast<qsizetype>(i)].digitValue())];
            if (!figure) figure = glyphs[i].glyph;
            if (*figure != glyphs[i].glyph || std::abs(glyphs[i].x - step * static_cast<double>(i)) > 1e-4)
                entry.tabular = false;
        }
    }
    return *entry.tabular;
}

bool TextShaper::buildPattern(const QString& patternText, FontEntry& entry)
{
    auto pattern = std::make_shared<Pattern>();
    pattern->text = layOut(patternText, entry);
    for (std::size_t r = 0; r < pattern->text.runs.size(); ++r) {
        const auto& glyphs = pattern->text.runs[r].glyphs;
        for (std::size_t g = 0; g < glyphs.size(); ++g) {
            const QString& text = glyphs[g].text;
            if (text.size() == 1 && isDigit(text[0])) {
                Pattern::Place place{r, g, {}};
                place.glyphs[0] = glyphs[g].glyph;
                pattern->places.push_back(place);
            } else if (std::any_of(text.begin(), text.end(), isDigit)) {
                return false; // a figure is part of a ligature
            }
        }
    }
    for (int digit = 1; digit < 10; ++digit) {
        const ShapedText other = layOut(withAllDigits(patternText, static_cast<char>('0' + digit)), entry);
        if (!sameButForFigures(pattern->text, other)) return false;
        for (Pattern::Place& place : pattern->places)
            place.glyphs[static_cast<std::size_t>(digit)] = other.runs[place.run].glyphs[place.glyph].glyph;
    }
    entry.patterns[patternText] = std::move(pattern);
    return true;
}

std::shared_ptr<const ShapedText> TextShaper::withExchangedDigits(const QString& text, FontEntry& entry)
{
    const QString patternText = withAllDigits(text, '0');
    auto found = entry.patterns.constFind(patternText);
    if (found == entry.patterns.constEnd()) {
        if (entry.patterns.size() >= mostPatterns) entry.patterns.clear();
        if (!figuresAreTabular(entry) || !buildPattern(patternText, entry))
            entry.patterns[patternText] = nullptr;
        found = entry.patterns.constFind(patternText);
    }
    const std::shared_ptr<const Pattern> pattern = *found;
    if (!pattern) return nullptr;

    // The figures of the text in order are the figures of the glyphs in order: clusters keep the text's
    // order.
    QString digits;
    std::copy_if(text.begin(), text.end(), std::back_inserter(digits), isDigit);
    if (static_cast<std::size_t>(digits.size()) != pattern->places.size()) return nullptr;
    auto shaped = std::make_shared<ShapedText>(pattern->text);
    for (std::size_t i = 0; i < pattern->places.size(); ++i) {
        const Pattern::Place& place = pattern->places[i];
        const QChar digit = digits[static_cast<qsizetype>(i)];
        ShapedGlyph& glyph = shaped->runs[place.run].glyphs[place.glyph];
        glyph.glyph = place.glyphs[static_cast<std::size_t>(digit.digitValue())];
        glyph.text = QString(digit);
    }
    return shaped;
}

std::shared_ptr<const ShapedText> TextShaper::shape(const QString& text, const FontSpec& font)
{
    FontEntry& entry = entryFor(font);
    const auto cached = entry.texts.constFind(text);
    if (cached != entry.texts.constEnd()) return *cached;

    std::shared_ptr<const ShapedText> shaped;
    if (std::any_of(text.begin(), text.end(), isDigit)) shaped = withExchangedDigits(text, entry);
    if (!shaped) shaped = std::make_shared<const ShapedText>(layOut(text, entry));
    if (entry.texts.size() >= mostCachedTexts) entry.texts.clear();
    entry.texts.insert(text, shaped);
    return shaped;
}

} // namespace quillfern::drawing
