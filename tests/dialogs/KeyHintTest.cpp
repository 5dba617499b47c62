#include "dialogs/KeyHint.h"

#include "support/Cases.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QPushButton>
#include <QStyle>
#include <QTest>
#include <QVBoxLayout>

namespace quillfern {
namespace {

bool isRed(const QColor& color)
{
    return color.red() > 150 && color.green() < 90 && color.blue() < 90;
}

/// The red part of a picture, and whether one of its rows is red over the whole width, as an underline is.
struct Mark
{
    QRect box;
    bool isUnderlined = false;
};

Mark redMark(QWidget& widget)
{
    widget.ensurePolished();
    widget.resize(widget.sizeHint());
    const QImage image = widget.grab().toImage();
    Mark mark;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            if (isRed(image.pixelColor(x, y))) mark.box |= QRect(x, y, 1, 1);
    for (int y = mark.box.top(); y <= mark.box.bottom(); ++y) {
        int run = 0;
        for (int x = mark.box.left(); x <= mark.box.right(); ++x)
            run += isRed(image.pixelColor(x, y)) ? 1 : 0;
        mark.isUnderlined |= run >= 5 && run == mark.box.width() && y >= mark.box.bottom() - 1;
    }
    return mark;
}

TEST(KeyHint, MarksOneLetterOfATitle)
{
    // text, key, which of its occurrences, the position of the marked letter in the title or -1, the title
    const Rows<const char*, const char*, int, int, const char*> rows = {
        {"Convert to Copy", "c", 1, 0, "Convert to Copy"},
        {"Add Folder", "f", 1, 4, "Add Folder"},
        {"Import From Text File", "F", 2, 17, "Import From Text File"},
        {"Import From Text fit", "F", 2, 7, "Import From Text fit"},
        {"Import From Text", "t", 2, 15, "Import From Text"},
        {"Import From Text", "T", 1, 5, "Import From Text"},
        {"&Save && Quit", "q", 1, 7, "Save & Quit"},
        {"Save", "x", 1, -1, "Save"},
        {"Save", "", 1, -1, "Save"},
        {"save", "S", 2, -1, "save"},
    };
    for (const auto& [text, key, occurrance, marked, shown] : rows) {
        QPushButton button(QString::fromUtf8(text));
        QStyle* const before = button.style();
        setButtonKeyCharacter(button, QString::fromUtf8(key), Qt::red, occurrance);
        const Mark mark = redMark(button);
        if (marked < 0) {
            EXPECT_TRUE(mark.box.isEmpty() && button.style() == before) << text;
            EXPECT_TRUE(button.shortcut().isEmpty()) << text;
            continue;
        }
        const QString title = QString::fromUtf8(shown);
        const QFontMetricsF metrics(button.font());
        const qreal letter = metrics.horizontalAdvance(title.at(marked));
        const qreal left = (button.width() - metrics.horizontalAdvance(title)) / 2 +
                           metrics.horizontalAdvance(title.left(marked));
        EXPECT_NEAR(QRectF(mark.box).center().x(), left + letter / 2, 2.5) << text;
        EXPECT_TRUE(mark.isUnderlined) << text;
    }
}

TEST(KeyHint, AltAndTheKeyClickAlsoAfterTheTitleOrTheStyleChanges)
{
    QWidget window;
    auto* const layout = new QVBoxLayout(&window);
    auto* const button = new QPushButton(u"Convert"_s);
    layout->addWidget(button);
    setButtonKeyCharacter(*button, u"c"_s);
    int clicks = 0;
    QObject::connect(button, &QPushButton::clicked, [&] { ++clicks; });
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    const auto press = [&](Qt::Key key) {
        QApplication::processEvents();
        QTest::keyClick(&window, key, Qt::AltModifier);
        QTest::qWait(150); // a shortcut shows the button pressed for a moment
        return clicks;
    };
    EXPECT_EQ(press(Qt::Key_C), 1);
    button->setText(u"Count"_s);
    EXPECT_EQ(press(Qt::Key_C), 2);
    setButtonKeyCharacter(*button, u"U"_s);
    EXPECT_EQ(press(Qt::Key_C), 2);
    EXPECT_EQ(press(Qt::Key_U), 3);

    const QString style = QApplication::style()->name();
    for (const QString& next : {u"windows"_s, style}) {
        const QStyle* const former = button->style();
        QApplication::setStyle(next);
        QTest::qWait(20);
        EXPECT_NE(button->style(), former) << "a button takes up the application's style";
        EXPECT_TRUE(button->style()->name().isEmpty()) << "and keeps its hint";
    }
    EXPECT_EQ(press(Qt::Key_U), 4);
    button->setText(u"Go"_s);
    EXPECT_EQ(press(Qt::Key_U), 4) << "the key is not in the title";
}

} // namespace
} // namespace quillfern
