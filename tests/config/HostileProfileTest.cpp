// Profiles come from anywhere: what a damaged or forged one holds must be refused, or be harmless. Under the
// sanitizers ("./test.sh asan") these tests find what a plain build lets pass.

#include "config/Numbering.h"
#include "config/Preview.h"
#include "config/Profile.h"
#include "platform/drawing/TextShaper.h"
#include "platform/store/PropertyList.h"
#include "platform/system/Failure.h"
#include "stamps/ImageStamp.h"
#include "stamps/TextStamp.h"
#include "support/Tools.h"

#include <QImage>
#include <gtest/gtest.h>
#include <limits>
#include <random>

namespace quillfern {
namespace {

class NoPages final : public pageimages::PageImageSource
{
  public:
    std::optional<pageimages::PageImage> page(const pageimages::PageImageRequest&) override { return {}; }
};

class HostileProfile : public testing::Test
{
  protected:
    HostileProfile()
    {
        QImage image(3, 2, QImage::Format_ARGB32);
        image.fill(QColor(10, 200, 30, 128));
        const QString picture = scratch.path(QStringLiteral("seal.png"));
        EXPECT_TRUE(image.save(picture));
        auto seal = std::make_shared<ImageStamp>();
        seal->loadPicture(asPath(picture));
        seal->setMarginAnchor(MarginAnchor::TopLeft);
        auto text = std::make_shared<TextStamp>();
        text->setMarginAnchor(MarginAnchor::BottomRight);
        text->isUnderline = true;
        text->outlineWidth = 1;
        Numbering number;
        number.stamps = {text, seal};
        record = *number.getData();
    }

    /// Loads a profile of these bytes and uses what it holds. Returns why it was refused; empty when it was
    /// loaded.
    std::string use(const QByteArray& bytes)
    {
        Numbering number;
        try {
            loadProfile(number, asPath(scratch.write(QStringLiteral("p.qfprofile"), bytes)));
        } catch (const Failure& failure) {
            EXPECT_EQ(*number.getData(), fresh) << "a refused profile changes nothing";
            return failure.what();
        }
        use(number);
        return {};
    }

    void use(Numbering& number)
    {
        EXPECT_FALSE(number.getData()->empty());
        for (const auto& stamp : number.stamps)
            static_cast<void>(stamp->description());
        EXPECT_FALSE(preview.preview2(number.configuration(), 3, {QSizeF(60, 80), 1, 0}).isNull());
    }

    Scratch scratch;
    store::Record record;
    store::Record fresh = *Numbering().getData();
    drawing::TextShaper shaper;
    NoPages pages;
    Preview preview{shaper, pages};
};

TEST_F(HostileProfile, IsRefusedWithAReason)
{
    const QByteArray whole = store::writePropertyList(record);
    ASSERT_EQ(use(whole), "");
    const auto with = [&](const char* from, const char* to) {
        QByteArray bytes = whole;
        EXPECT_TRUE(bytes.contains(from)) << from;
        return bytes.replace(bytes.indexOf(from), static_cast<qsizetype>(qstrlen(from)), to);
    };
    // The opening tag is not one of a dictionary, and its first key is gone, but its last tags are in order.
    const QByteArray begin = "<dict>\n\t<key>endPage</key>";
    EXPECT_NE(use(with(begin.constData(), "<d>")), "");
    EXPECT_NE(use(with("<dict>", "<d>").replace("</dict>\n</plist>", "</d>\n</plist>")), "");
    EXPECT_NE(use(with("<array>", "<a>")), "");
    EXPECT_NE(use(with("<key>Stamps</key>", "<key>Stamps</key><key>Stamps</key>")), "");
    EXPECT_NE(use(with("<integer>", "<integer><integer>")), "");
    EXPECT_NE(use(with("<data>", "<data>!")), "");
    EXPECT_NE(use(with("</plist>", "</plist>" + whole)), "");
    for (qsizetype length = 0; length < whole.lastIndexOf("</plist>"); length += 3)
        EXPECT_NE(use(whole.left(length)), "") << "cut at " << length;
}

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

TEST_F(HostileProfile, ValuesOfAnyKindAndSizeAreHarmless)
{
    using Limits = std::numeric_limits<std::int64_t>;
    const std::vector<store::RecordValue> values = {
        Limits::max(),
        std::numeric_limits<std::int32_t>::min(),
        std::numeric_limits<std::int32_t>::max(),
        std::numeric_limits<double>::quiet_NaN(),
        -std::numeric_limits<double>::infinity(),
        1e300,
        1e-300,
        QStringLiteral("{0}{1}{2}{ %1%2 \u202e\u0301\ufffd"),
        QByteArray("II*\0\xFF\xFF\xFF\xFF", 8),
        store::RecordValue::List{store::RecordValue::List()},
        store::Record(),
    };
    int used = 0;
    withEachValueReplaced(record, values, [&](const store::Record& forged) {
        Numbering number;
        ASSERT_TRUE(number.setData(&forged));
        use(number);
        number.fillAbsentValues();
        EXPECT_TRUE(number.getData()->contains(QStringLiteral("Stamps")));
        ++used;
    });
    EXPECT_GT(used, 500);
}

TEST_F(HostileProfile, DamagedBytesAreRefusedOrHarmless)
{
    const QByteArray whole = store::writePropertyList(record);
    const QString path = scratch.path(QStringLiteral("binary.qfprofile"));
    runTool(QStringLiteral("python3"),
            {QStringLiteral("-c"),
             QStringLiteral("import plistlib,sys\nd=plistlib.load(open(sys.argv[1],'rb'))\n"
                            "plistlib.dump(d,open(sys.argv[2],'wb'),fmt=plistlib.FMT_BINARY)"),
             scratch.write(QStringLiteral("x.qfprofile"), whole), path});
    std::mt19937 random(20261122);
    const auto below = [&](qsizetype end) {
        return static_cast<qsizetype>(random() % static_cast<std::size_t>(end));
    };
    for (const QByteArray& original : {whole, readFile(path)}) {
        ASSERT_EQ(use(original), "");
        int loaded = 0;
        constexpr int rounds = 600;
        for (int i = 0; i < rounds; ++i) {
            QByteArray bytes = original;
            for (int j = 0; j <= i % 3; ++j) {
                const qsizetype at = below(bytes.size());
                if (i % 4 == 0)
                    bytes.remove(at, 1 + below(40));
                else if (i % 4 == 1)
                    bytes.insert(at, bytes.mid(below(bytes.size()), 1 + below(40)));
                else
                    bytes[at] = static_cast<char>(random());
            }
            loaded += use(bytes).empty() ? 1 : 0;
        }
        EXPECT_GT(loaded, 0);
        EXPECT_LT(loaded, rounds);
    }
}

} // namespace
} // namespace quillfern
