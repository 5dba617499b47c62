#include "platform/pdf/PdfCanvas.h"

#include <charconv>
#include <cmath>

namespace quillfern::pdf {

namespace {

void appendNumber(std::string& text, double value, int decimals)
{
    if (!std::isfinite(value)) value = 0;
    // Nothing on a page lies further out, and readers differ on larger numbers.
    value = std::min(std::max(value, -1e9), 1e9);
    char digits[32];
    const auto result =
        std::to_chars(digits, digits + sizeof digits, value, std::chars_format::fixed, decimals);
    const char* end = result.ptr;
    if (decimals > 0) {
        while (end[-1] == '0')
            --end;
        if (end[-1] == '.') --end;
    }
    if (end - digits == 2 && digits[0] == '-' && digits[1] == '0')
        text += '0';
    else
        text.append(static_cast<const char*>(digits), end);
}

void appendHex(std::string& text, unsigned value)
{
    constexpr char hexDigits[] = "0123456789ABCDEF";
    for (int shift = 12; shift >= 0; shift -= 4)
        text += hexDigits[value >> shift & 0xF];
}

/// Factors of rotation need more digits than positions do: they are multiplied by the length of the text.
constexpr int factorDecimals = 6;

} // namespace

PdfCanvas::PdfCanvas(PdfResources& resources, PdfPageResources& page, drawing::TextShaper& shaper,
                     const QTransform& toUserSpace)
    : resources_(resources), page_(page), shaper_(shaper), transform_(toUserSpace)
{
}

void PdfCanvas::restore()
{
    if (stack_.empty()) return;
    transform_ = stack_.back();
    stack_.pop_back();
}

void PdfCanvas::number(double value, int decimals)
{
    appendNumber(content_, value, decimals);
    content_ += ' ';
}

void PdfCanvas::numbers(std::initializer_list<double> values, int decimals)
{
    for (const double value : values)
        number(value, decimals);
}

void PdfCanvas::point(const QTransform& transform, double x, double y)
{
    const QPointF mapped = transform.map(QPointF(x, y));
    numbers({mapped.x(), mapped.y()});
}

void PdfCanvas::beginArtifact()
{
    artifactStart_ = content_.size();
    content_ += "/Artifact<</Type/Pagination>>BDC q\n";
    artifactBody_ = content_.size();
    fillNow_.clear();
    strokeNow_.clear();
    opacityNow_.clear();
}

void PdfCanvas::endArtifact()
{
    if (content_.size() == artifactBody_)
        content_.resize(artifactStart_); // a stamp that shows nothing here
    else
        content_ += "Q EMC\n";
}

void PdfCanvas::colour(const QColor& colour, bool stroke)
{
    std::string text;
    const double r = colour.redF();
    const double g = colour.greenF();
    const double b = colour.blueF();
    if (r == g && g == b) {
        appendNumber(text, r, 3);
        text += stroke ? " G " : " g ";
    } else {
        const PdfResource* space = resources_.colourSpace();
        if (space) text += page_.nameOf(*space) + (stroke ? " CS " : " cs ");
        for (const double part : {r, g, b}) {
            appendNumber(text, part, 3);
            text += ' ';
        }
        text += space ? (stroke ? "SC " : "sc ") : (stroke ? "RG " : "rg ");
    }
    std::string& now = stroke ? strokeNow_ : fillNow_;
    if (text == now) return;
    content_ += text;
    now = text;
}

void PdfCanvas::fillColour(const QColor& c)
{
    colour(c, false);
}

void PdfCanvas::strokeColour(const QColor& c)
{
    colour(c, true);
}

void PdfCanvas::opacities(double fill, double stroke)
{
    if (fill >= 1 && stroke >= 1 && opacityNow_.empty()) return;
    std::string text = page_.nameOf(resources_.opacity(fill, stroke)) + " gs ";
    if (text == opacityNow_) return;
    content_ += text;
    opacityNow_ = text;
}

void PdfCanvas::rectangle(const QRectF& rect)
{
    point(transform_, rect.left(), rect.top());
    content_ += "m ";
    point(transform_, rect.right(), rect.top());
    content_ += "l ";
    point(transform_, rect.right(), rect.bottom());
    content_ += "l ";
    point(transform_, rect.left(), rect.bottom());
    content_ += "l h f\n";
}

void PdfCanvas::fillRect(const QRectF& rect, const QColor& color)
{
    if (color.alpha() == 0 || rect.isEmpty()) return;
    opacities(color.alphaF(), 1);
    fillColour(color);
    rectangle(rect);
}

void PdfCanvas::drawText(const drawing::ShapedText& text, const drawing::TextPaint& paint)
{
    const bool fill = paint.fill.alpha() > 0;
    const bool stroke = paint.strokeWidth > 0 && paint.stroke.alpha() > 0;
    if (!fill && !stroke) return;
    opacities(fill ? paint.fill.alphaF() : 1, stroke ? paint.stroke.alphaF() : 1);
    if (fill) {
        fillColour(paint.fill);
        for (const QRectF& line : drawing::textDecorations(text, paint))
            rectangle(line);
    }
    if (stroke) {
        strokeColour(paint.stroke);
        // Lengths of the graphics state are in the page's units, which may be larger than points.
        number(paint.strokeWidth * std::sqrt(std::abs(transform_.determinant())));
        content_ += "w 1 j ";
    }
    for (const drawing::ShapedRun& run : text.runs) {
        if (PdfResources::Font* font = resources_.font(run.face))
            glyphsAsText(run, *font, paint);
        else
            glyphsAsOutlines(run, paint);
    }
}

void PdfCanvas::glyphsAsText(const drawing::ShapedRun& run, PdfResources::Font& font,
                             const drawing::TextPaint& paint)
{
    const double size = paint.fontSize;
    const bool fill = paint.fill.alpha() > 0;
    const bool stroke = paint.strokeWidth > 0 && paint.stroke.alpha() > 0;
    content_ += "BT ";
    content_ += page_.nameOf(font.resource) + ' ';
    number(size);
    content_ += "Tf ";
    if (stroke) content_ += fill ? "2 Tr " : "1 Tr ";

    // A string goes on as long as the glyphs follow each other on one line; small shifts are written between.
    double pen = 0;
    double line = 0;
    bool isFirst = true;
    bool open = false;
    bool inString = false;
    const auto closeString = [&] {
        if (inString) content_ += '>';
        inString = false;
    };
    const auto closeArray = [&] {
        closeString();
        if (open) content_ += "]TJ ";
        open = false;
    };

    for (std::size_t i = 0; i < run.glyphs.size();) {
        // A cluster: the glyph that carries the text and those that follow without any.
        std::size_t end = i + 1;
        while (end < run.glyphs.size() && run.glyphs[end].text.isEmpty())
            ++end;
        bool mapped = end - i == 1;
        for (std::size_t g = i; g < end; ++g)
            mapped =
                font.font->use(run.glyphs[g].glyph, end - i == 1 ? run.glyphs[g].text : QString()) && mapped;
        if (!mapped && !run.glyphs[i].text.isEmpty()) {
            closeArray();
            content_ += "/Span<</ActualText<FEFF";
            for (const QChar c : run.glyphs[i].text)
                appendHex(content_, c.unicode());
            content_ += ">>>BDC ";
        }
        for (std::size_t g = i; g < end; ++g) {
            const drawing::ShapedGlyph& glyph = run.glyphs[g];
            const double shift = (pen - glyph.x) * 1000;
            if (!open || std::abs(glyph.y - line) > 0.0005) {
                closeArray();
                const QTransform place = QTransform(1, 0, 0, -1, glyph.x * size, glyph.y * size) * transform_;
                // A text object begins at the origin, so upright text needs no matrix there.
                if (isFirst && place.type() <= QTransform::TxTranslate) {
                    numbers({place.dx(), place.dy()});
                    content_ += "Td[";
                } else {
                    numbers({place.m11(), place.m12(), place.m21(), place.m22()}, factorDecimals);
                    numbers({place.dx(), place.dy()});
                    content_ += "Tm[";
                }
                isFirst = false;
                open = true;
                line = glyph.y;
            } else if (std::abs(shift) > 0.5) {
                closeString();
                appendNumber(content_, shift, 1);
            }
            if (!inString) content_ += '<';
            inString = true;
            appendHex(content_, font.font->code(glyph.glyph));
            pen = glyph.x + font.font->advance(glyph.glyph) / 1000;
        }
        if (!mapped && !run.glyphs[i].text.isEmpty()) {
            closeArray();
            content_ += "EMC ";
        }
        i = end;
    }
    closeArray();
    content_ += "ET\n";
}

void PdfCanvas::outline(const QPainterPath& path, const QTransform& transform)
{
    bool open = false;
    for (int i = 0; i < path.elementCount(); ++i) {
        const QPainterPath::Element element = path.elementAt(i);
        switch (element.type) {
        case QPainterPath::MoveToElement:
            if (open) content_ += "h ";
            point(transform, element.x, element.y);
            content_ += "m ";
            open = true;
            break;
        case QPainterPath::LineToElement:
            point(transform, element.x, element.y);
            content_ += "l ";
            break;
        default: // a curve: this and the two that follow
            for (int k = 0; k < 3; ++k)
                point(transform, path.elementAt(i + k).x, path.elementAt(i + k).y);
            content_ += "c ";
            i += 2;
        }
    }
    if (open) content_ += "h ";
}

void PdfCanvas::glyphsAsOutlines(const drawing::ShapedRun& run, const drawing::TextPaint& paint)
{
    const double size = paint.fontSize;
    const bool fill = paint.fill.alpha() > 0;
    const bool stroke = paint.strokeWidth > 0 && paint.stroke.alpha() > 0;
    for (const drawing::ShapedGlyph& glyph : run.glyphs) {
        if (run.face->isPicture(glyph.glyph)) {
            if (fill) glyphAsPicture(run, glyph, paint);
            continue;
        }
        const QPainterPath& path = run.face->outline(glyph.glyph);
        if (path.isEmpty()) continue;
        outline(path, QTransform(size, 0, 0, size, glyph.x * size, glyph.y * size) * transform_);
        content_ += fill && stroke ? "B\n" : fill ? "f\n" : "S\n";
    }
}

void PdfCanvas::glyphAsPicture(const drawing::ShapedRun& run, const drawing::ShapedGlyph& glyph,
                               const drawing::TextPaint& paint)
{
    const GlyphPicture& picture = resources_.glyphPicture(run.face, glyph.glyph);
    const double size = paint.fontSize;
    const QRectF box(picture.box.topLeft() * size + QPointF(glyph.x, glyph.y) * size,
                     picture.box.size() * size);
    drawPicture(picture.picture, box, paint.fill.alphaF());
}

void PdfCanvas::drawPicture(const drawing::Picture& picture, const QRectF& target, double opacity)
{
    if (picture.image().isNull() || target.isEmpty() || opacity <= 0) return;
    opacities(opacity, opacity);
    // An image fills the unit square, its top at y = 1.
    const QTransform place =
        QTransform(target.width(), 0, 0, -target.height(), target.left(), target.bottom()) * transform_;
    content_ += "q ";
    numbers({place.m11(), place.m12(), place.m21(), place.m22()}, factorDecimals);
    numbers({place.dx(), place.dy()});
    content_ += "cm " + page_.nameOf(resources_.picture(picture)) + " Do Q\n";
}

} // namespace quillfern::pdf
