#include "runner/StampOptions.h"

#include "platform/system/Failure.h"
#include "platform/system/NativePath.h"
#include "runner/OptionValues.h"
#include "stamps/ImageStamp.h"
#include "stamps/TextStamp.h"

#include <QRegularExpression>
#include <algorithm>
#include <array>
#include <cmath>

namespace quillfern {

namespace {

constexpr std::array<std::pair<const char*, MarginAnchor>, 9> anchors = {
    {{"TopLeft", MarginAnchor::TopLeft},
     {"TopMiddle", MarginAnchor::TopMiddle},
     {"TopRight", MarginAnchor::TopRight},
     {"MiddleLeft", MarginAnchor::MiddleLeft},
     {"MiddleMiddle", MarginAnchor::MiddleMiddle},
     {"MiddleRight", MarginAnchor::MiddleRight},
     {"BottomLeft", MarginAnchor::BottomLeft},
     {"BottomMiddle", MarginAnchor::BottomMiddle},
     {"BottomRight", MarginAnchor::BottomRight}}};
constexpr std::array<std::pair<const char*, NumberType>, 4> numberTypes = {
    {{"plain", NumberType::PlainText},
     {"numbers", NumberType::Numbers},
     {"roman-capital", NumberType::RomanNumbersCapital},
     {"roman-small", NumberType::RomanNumbersSmall}}};

QColor color(const QString& option, const QString& text)
{
    static const QRegularExpression form(QStringLiteral("^#[0-9A-Fa-f]{6}$"));
    if (!form.match(text).hasMatch()) wrong(option, text, QStringLiteral("a colour as #RRGGBB"));
    return QColor(text);
}

constexpr std::int64_t largestSide = 1'000'000;

} // namespace

bool StampOptions::apply(const QString& name, const QString& value)
{
    return applyToAny(name, value) || applyToText(name, value) || applyToImage(name, value);
}

bool StampOptions::applyToAny(const QString& name, const QString& value)
{
    if (name == QLatin1String("anchor"))
        stamp(name).setMarginAnchor(word(name, value, anchors));
    else if (name == QLatin1String("under"))
        stamp(name).setIsDrawUnderPDFContent(true);
    else if (name == QLatin1String("symmetric"))
        stamp(name).setIsSymmetry(true);
    else
        return false;
    return true;
}

bool StampOptions::applyToText(const QString& name, const QString& value)
{
    if (name == QLatin1String("text")) {
        begin(text_ = std::make_shared<TextStamp>());
        text_->number.numberFormat = value;
    } else if (name == QLatin1String("font"))
        text(name).font.fontName = value;
    else if (name == QLatin1String("font-size"))
        text(name).font.fontSize = realNumber(name, value, 0.5, 5000);
    else if (name == QLatin1String("bold"))
        text(name).isBold = true;
    else if (name == QLatin1String("italic"))
        text(name).isItalic = true;
    else if (name == QLatin1String("color"))
        text(name).font.fontColor = color(name, value);
    else if (name == QLatin1String("opacity") && text_)
        text_->textOpacity = wholeNumber(name, value, 0, 100);
    else if (name == QLatin1String("rotation") && text_)
        text_->textRotation = realNumber(name, value, -36000, 36000);
    else if (name == QLatin1String("fill-in"))
        text(name).isFillIn = true;
    else if (name == QLatin1String("number-type"))
        text(name).number.numberType = word(name, value, numberTypes);
    else if (name == QLatin1String("padding"))
        text(name).number.paddingLength = wholeNumber(name, value, 0, 100);
    else
        return false;
    return true;
}

bool StampOptions::applyToImage(const QString& name, const QString& value)
{
    if (name == QLatin1String("image"))
        beginImage(value);
    else if (name == QLatin1String("width"))
        setImageSide(name, value, true);
    else if (name == QLatin1String("height"))
        setImageSide(name, value, false);
    else if (name == QLatin1String("opacity"))
        image(name).stampImageOpacity = wholeNumber(name, value, 0, 100);
    else if (name == QLatin1String("rotation"))
        image(name).stampImageRotation = wholeNumber(name, value, -36000, 36000);
    else
        return false;
    return true;
}

void StampOptions::begin(const std::shared_ptr<IStampItem>& stamp)
{
    if (stamp != text_) text_.reset();
    if (stamp != image_) image_.reset();
    stamp->setMarginAnchor(MarginAnchor::BottomMiddle);
    stamps_.push_back(stamp);
}

void StampOptions::beginImage(const QString& path)
{
    auto stamp = std::make_shared<ImageStamp>();
    try {
        stamp->loadPicture(FilePath::fromText(path));
    } catch (const Failure& failure) {
        throw WrongUse(QStringLiteral("the picture \"%1\" cannot be used: %2")
                           .arg(readableName(path), failure.reason()));
    }
    image_ = std::move(stamp);
    isWidthGiven_ = false;
    isHeightGiven_ = false;
    begin(image_);
}

void StampOptions::setImageSide(const QString& name, const QString& value, bool isWidth)
{
    ImageStamp& stamp = image(name);
    const std::int64_t length = wholeNumber(name, value, 1, largestSide);
    const QSizeF pixels(stamp.cacheImage()->image().size());
    const double widthToHeight = pixels.width() / pixels.height();
    const auto following = [length](double ratio) {
        return std::clamp<std::int64_t>(std::llround(static_cast<double>(length) * ratio), 1, largestSide);
    };
    (isWidth ? stamp.stampImageWidth : stamp.stampImageHeight) = length;
    (isWidth ? isWidthGiven_ : isHeightGiven_) = true;
    if (!isHeightGiven_) stamp.stampImageHeight = following(1 / widthToHeight);
    if (!isWidthGiven_) stamp.stampImageWidth = following(widthToHeight);
}

IStampItem& StampOptions::stamp(const QString& option)
{
    if (text_) return *text_;
    if (image_) return *image_;
    throw WrongUse(
        QStringLiteral("--%1 describes a stamp; begin one with --text or --image before it").arg(option));
}

TextStamp& StampOptions::text(const QString& option)
{
    stamp(option);
    if (!text_)
        throw WrongUse(QStringLiteral("--%1 is for text stamps; the last one is a picture").arg(option));
    return *text_;
}

ImageStamp& StampOptions::image(const QString& option)
{
    stamp(option);
    if (!image_)
        throw WrongUse(QStringLiteral("--%1 is for picture stamps; the last one is text").arg(option));
    return *image_;
}

} // namespace quillfern
