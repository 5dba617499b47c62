#include "platform/drawing/FontFace.h"

#include <QCryptographicHash>
#include <QTransform>

namespace quillfern::drawing {

namespace {

double unitsOf(const QRawFont& font)
{
    const double units = font.unitsPerEm();
    return units > 0 ? units : 1000.0;
}

QRawFont atOnePixelPerUnit(QRawFont font)
{
    font.setPixelSize(unitsOf(font));
    return font;
}

} // namespace

FontFace::FontFace(const QRawFont& font)
    : font_(atOnePixelPerUnit(font)), unitsPerEm_(unitsOf(font)),
      hasPictures_(!font.fontTable("CBDT").isEmpty() || !font.fontTable("sbix").isEmpty())
{
}

QByteArray FontFace::identityOf(const QRawFont& font)
{
    QCryptographicHash hash(QCryptographicHash::Md5);
    hash.addData(font.familyName().toUtf8() + '|' + font.styleName().toUtf8() + '|' +
                 QByteArray::number(font.weight()) + '|' + QByteArray::number(font.style()));
    // The head table holds the checksum of the whole file.
    hash.addData(font.fontTable("head"));
    hash.addData(font.fontTable("maxp"));
    return hash.result();
}

const QPainterPath& FontFace::outline(quint32 glyph) const
{
    const auto found = outlines_.find(glyph);
    if (found != outlines_.end()) return found->second;
    QPainterPath path =
        QTransform::fromScale(1 / unitsPerEm_, 1 / unitsPerEm_).map(font_.pathForGlyph(glyph));
    path.setFillRule(Qt::WindingFill);
    return outlines_.emplace(glyph, std::move(path)).first->second;
}

bool FontFace::isPicture(quint32 glyph) const
{
    return hasPictures_ && outline(glyph).isEmpty();
}

} // namespace quillfern::drawing
