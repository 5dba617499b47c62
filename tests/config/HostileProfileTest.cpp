// Profiles come from anywhere: what a forged one holds must be harmless. (The property lists' own tests
// damage the bytes.) Under the sanitizers ("./test.sh asan") this finds what a plain build lets pass.

#include "config/Numbering.h"
#include "config/Preview.h"
#include "platform/drawing/TextShaper.h"
#include "stamps/ImageStamp.h"
#include "stamps/TextStamp.h"
#include "support/Tools.h"

#include <limits>

namespace quillfern {
namespace {

class NoPages final : public pageimages::PageImageSource
{
  public:
    std::optional<pageimages::PageImage> page(const pageimages::PageImageRequest&) override { return {}; }
};

/// Calls `used` with copies of the record in which one value, at any depth, is another one.
void withEachValueReplaced(const store::Record& record, const std::vector<store::RecordValue>& values,
                           const std::function<void(const store::Record&)>& used)
{
    for (const auto& [key, value] : record.entries()) {
        const auto put = [&record, &used, name = key](store::RecordValue other) {
            store::Record copy = record;
            copy.set(name, std::move(other));
            used(copy);
        };
        for (const store::RecordValue& other : values)
            put(other);
        if (const auto* inner = value.as<store::Record>())
            withEachValueReplaced(*inner, values, [&](const store::Record& other) { put(other); });
        if (const auto* list = value.as<store::RecordValue::List>())
            for (std::size_t i = 0; i < list->size(); ++i)
                withEachValueReplaced(*(*list)[i].as<store::Record>(), values,
                                      [&](const store::Record& other) {
                                          store::RecordValue::List copy = *list;
                                          copy[i] = other;
                                          put(copy);
                                      });
    }
}

TEST(HostileProfile, ValuesOfAnyKindAndSizeAreHarmless)
{
    const Scratch scratch;
    auto seal = std::make_shared<ImageStamp>();
    seal->loadPicture(asPath(scratch.writePicture(u"seal.png"_s, {3, 2}, QColor(10, 200, 30, 128))));
    seal->setMarginAnchor(MarginAnchor::TopLeft);
    auto text = std::make_shared<TextStamp>();
    text->setMarginAnchor(MarginAnchor::BottomRight);
    text->isUnderline = true;
    text->outlineWidth = 1;
    Numbering whole;
    whole.stamps = {text, seal};
    drawing::TextShaper shaper;
    NoPages pages;
    Preview preview(shaper, pages);
    const std::vector<store::RecordValue> values = {
        std::numeric_limits<std::int64_t>::max(),
        std::numeric_limits<std::int32_t>::min(),
        std::numeric_limits<std::int32_t>::max(),
        std::numeric_limits<double>::quiet_NaN(),
        -std::numeric_limits<double>::infinity(),
        1e300,
        1e-300,
        u"{0}{1}{2}{ %1%2 \u202e\u0301\ufffd"_s,
        QByteArray("II*\0\xFF\xFF\xFF\xFF", 8),
        store::RecordValue::List{store::RecordValue::List()},
        store::Record(),
    };
    int used = 0;
    withEachValueReplaced(*whole.getData(), values, [&](const store::Record& forged) {
        Numbering number;
        ASSERT_TRUE(number.setData(&forged));
        EXPECT_FALSE(number.getData()->empty());
        for (const auto& stamp : number.stamps)
            static_cast<void>(stamp->description());
        EXPECT_FALSE(preview.preview2(number.configuration(), 3, {QSizeF(60, 80), 1, 0}).isNull());
        number.fillAbsentValues();
        EXPECT_TRUE(number.getData()->contains(u"Stamps"_s));
        ++used;
    });
    EXPECT_GT(used, 500);
}

} // namespace
} // namespace quillfern
