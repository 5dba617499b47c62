#include "dialogs/ThemedIcon.h"

#include "support/Cases.h"

#include <QApplication>
#include <QPalette>

namespace quillfern {
namespace {

TEST(ThemedIcon, FollowsThePalette)
{
    const auto inkOf = [](const QColor& text) {
        QPalette palette = QApplication::palette();
        palette.setColor(QPalette::ButtonText, text);
        QApplication::setPalette(palette);
        const QImage image = themedIcon(u"help"_s).pixmap(48, 48).toImage();
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                if (image.pixelColor(x, y).alpha() == 255) return image.pixelColor(x, y).name();
        return QString();
    };
    EXPECT_EQ(inkOf(QColor(0x20, 0x30, 0x40)), u"#203040"_s);
    EXPECT_EQ(inkOf(QColor(0xF0, 0xE0, 0xD0)), u"#f0e0d0"_s);
}

} // namespace
} // namespace quillfern
