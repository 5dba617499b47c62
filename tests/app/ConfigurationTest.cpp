#include "app/AppFixture.h"
#include "app/TableRows.h"
#include "config/PreviewModel.h"

#include <QComboBox>

namespace quillfern {
namespace {

class Configuration : public StartedApp
{
  protected:
    QImage picture() { return ui().previewImageView->image(); }
    /// Whether doing this changes the picture.
    bool redraws(const std::function<void()>& action)
    {
        const QImage before = picture();
        action();
        return picture() != before;
    }
    /// Whether the picture has reached its place and was drawn at its size.
    bool isPreviewAtRest()
    {
        const QWidget& view = *ui().previewImageView;
        return view.geometry() == previewFrame(ui().previewBox->size()).toAlignedRect() &&
               picture().deviceIndependentSize().toSize() == view.size();
    }
    bool live(const QColor& color)
    {
        const QImage image = picture();
        return image.pixelColor(image.width() / 2, image.height() / 4) == color;
    }
};

TEST_F(Configuration, EveryFieldReachesTheConfigurationAsItIsTyped)
{
    const Rows<QLineEdit*, const char*, std::function<double()>, double, const char*> rows = {
        {ui().startPage, "12", [this] { return double(number().startPage()); }, 12, "12"},
        {ui().startPage, "0", [this] { return double(number().startPage()); }, 1, "1"},
        {ui().numberSteps, "0", [this] { return double(number().numberSteps()); }, 2, "2"},
        {ui().startNumber, "0", [this] { return double(number().startNumber()); }, 0, "0"},
        {ui().endPage, "0", [this] { return double(number().endPage()); }, 0, "0"},
        {ui().endPage, "0030", [this] { return double(number().endPage()); }, 30, "30"},
        {ui().startNumber, "-7x", [this] { return double(number().startNumber()); }, 7, "7"},
        {ui().numberSteps, "5", [this] { return double(number().numberSteps()); }, 5, "5"},
        {ui().startNumber, "12345678901", [this] { return double(number().startNumber()); }, 123456789,
         "123456789"},
        {ui().marginTop, "12.5", [this] { return number().marginTop(); }, 12.5, "12.5"},
        {ui().marginLeft, "1.2.3", [this] { return number().marginLeft(); }, 1.2, "1.2"},
        {ui().marginRight, ".5", [this] { return number().marginRight(); }, 0.5, "0.5"},
        {ui().marginBottom, "3e1", [this] { return number().marginBottom(); }, 31, "31"},
    };
    ui().settingTabView->setCurrentIndex(1);
    for (const auto& [field, typed, value, expected, shown] : rows) {
        type(*field, typed);
        EXPECT_EQ(value(), expected) << typed << ", while it is typed";
        QTest::keyClick(field, Qt::Key_Return);
        EXPECT_EQ(value(), expected) << typed;
        EXPECT_EQ(field->text(), QString::fromLatin1(shown));
    }
}

TEST_F(Configuration, ChoicesAndResets)
{
    waitFor([this] { return isPreviewAtRest(); }, "the preview");
    ui().settingTabView->setCurrentIndex(1);
    type(*ui().marginTop, "72");
    const auto choose = [](QComboBox& box, int index) {
        box.setFocus();
        QTest::keyClick(&box, Qt::Key_Home);
        for (int i = 0; i < index; ++i)
            QTest::keyClick(&box, Qt::Key_Down);
    };
    choose(*ui().unitsPopup, 2);
    EXPECT_EQ(number().marginUnit(), MarginUnit::Inches);
    EXPECT_EQ(number().marginTop(), 1.0);
    EXPECT_EQ(ui().marginTop->text(), u"1"_s);
    const double height = ui().previewImageView->height();
    press(window(), "isMarginInPercentage");
    EXPECT_NEAR(number().marginTop(), 72.0 / height * 100, 1e-9) << "percent of the preview on the screen";
    press(window(), "isMarginInPercentage");
    EXPECT_NEAR(number().marginTop(), 1, 1e-9);

    choose(*ui().pageRange, 2);
    EXPECT_EQ(number().pageRange(), PageRange::EvenPages);
    press(window(), "isContinuousNumbering");
    EXPECT_TRUE(number().isContinuousNumbering());
    type(*ui().endPage, "9");
    press(window(), "resetMarginsButton");
    EXPECT_EQ(number().marginTop(), 0);
    EXPECT_EQ(ui().marginTop->text(), u"0"_s);
    press(window(), "resetNumberCountersButton");
    EXPECT_EQ(number().endPage(), 0);
    EXPECT_EQ(ui().endPage->text(), u"0"_s);
    EXPECT_EQ(number().pageRange(), PageRange::EvenPages);
}

TEST_F(Configuration, ThePreviewFollowsWhatShows)
{
    addStamp("{0} of {1}")->font.fontSize = 40;
    ui().settingTabView->setCurrentIndex(1);
    EXPECT_TRUE(redraws([this] { type(*ui().startNumber, "8"); }));
    EXPECT_TRUE(redraws([this] { type(*ui().marginLeft, "30"); }));
    EXPECT_FALSE(redraws([this] { type(*ui().numberSteps, "4"); })) << "the first page shows no step";
    EXPECT_TRUE(redraws([this] { select({}), ui().stampsTableView->selectRow(0); })) << "highlighted";
    EXPECT_TRUE(redraws([this] { press(window(), "isHighlightStamp"); }));
    ui().settingTabView->setCurrentIndex(0);
    EXPECT_TRUE(redraws([this] {
        const QRect cell = ui().stampsTableView->visualRect(ui().stampsTableView->model()->index(0, 0));
        QTest::mouseClick(ui().stampsTableView->viewport(), Qt::LeftButton, {},
                          cell.topLeft() + QPoint(11, cell.height() / 2));
    })) << "switched off in the table";
    EXPECT_FALSE(number().stamps[0]->isSelected());
}

TEST_F(Configuration, TheLivePreviewShowsTheSelectedFile)
{
    const auto colored = [this](const char* name, const QByteArray& rgb) {
        return scratch.write(QString::fromLatin1(name), simplePdf({{rgb + " rg 0 0 612 792 re f"}}));
    };
    fill({colored("red.pdf", "1 0 0"), colored("blue.pdf", "0 0 1")});
    press(window(), "isLivePreview");
    EXPECT_FALSE(live(Qt::red)) << "no file is selected";
    select({0});
    waitFor([this] { return live(Qt::red); }, "the red page");
    select({1});
    waitFor([this] { return live(Qt::blue); }, "the blue page");
    press(window(), "isLivePreview");
    EXPECT_FALSE(live(Qt::blue));
}

TEST_F(Configuration, StampsAreMovedAndRemovedInTheTable)
{
    for (const char* name : {"one", "two", "three"})
        addStamp(name);
    const auto order = [this] {
        QString text;
        for (const auto& stamp : number().stamps)
            text += stamp->description().section(u'[', 1).chopped(1) + u' ';
        return text.trimmed();
    };
    QTableView& table = *ui().stampsTableView;
    table.selectRow(0);
    EXPECT_FALSE(actions().moveStampUp->isEnabled());
    table.selectRow(2);
    EXPECT_FALSE(actions().moveStampDown->isEnabled());
    press(window(), "moveStampUpButton");
    EXPECT_EQ(order(), u"one three two"_s);
    EXPECT_EQ(selectedRows(table), std::vector<int>{1});
    QTest::keyClick(&table, Qt::Key_Up, Qt::ControlModifier);
    EXPECT_EQ(order(), u"three one two"_s);
    press(window(), "moveStampDownButton");
    EXPECT_EQ(order(), u"one three two"_s);
    QTest::keyClick(&table, Qt::Key_Delete);
    EXPECT_EQ(order(), u"one two"_s);
    EXPECT_EQ(selectedRows(table), std::vector<int>{0});
    QTest::keyClick(&table, Qt::Key_Delete);
    EXPECT_EQ(order(), u"two"_s);
    EXPECT_TRUE(selectedRows(table).empty()) << "the last selected row was row 0";
    EXPECT_FALSE(actions().removeStamp->isEnabled());
}

TEST_F(Configuration, ProfilesAreSavedAndLoaded)
{
    addStamp("{0} saved");
    type(*ui().startNumber, "77");
    const QString path = scratch.path(u"mine.qfprofile"_s);
    const QString list = scratch.write(u"list.qfprofile"_s, "<plist version=\"1.0\"><array/></plist>");
    panels.answers = {QStringList{path}, QStringList{path}, QStringList{list}};
    press(window(), "saveStampsButton");
    EXPECT_EQ(alerts.informations, QStringList{u"Quillfern Profile save successfully."_s});
    EXPECT_EQ(panels.saved[0].type, u"qfprofile"_s);

    number().stamps.clear();
    type(*ui().startNumber, "1");
    press(window(), "loadStampsButton");
    ASSERT_EQ(number().stamps.size(), 1U);
    EXPECT_EQ(ui().startNumber->text(), u"77"_s);
    EXPECT_EQ(ui().stampsTableView->selectionModel()->selectedRows().size(), 1);
    actions().loadStamps->trigger();
    EXPECT_EQ(alerts.criticals, QStringList{u"Unable to load Quillfern Profile!"_s});
    EXPECT_EQ(number().startNumber(), 77) << "the configuration stays";

    panels.answers = {QStringList{scratch.path(u"gone/mine.qfprofile"_s)}};
    actions().saveStamps->trigger();
    EXPECT_EQ(alerts.criticals.constLast(), u"Unable to save Quillfern Profile!"_s);
}

TEST_F(Configuration, AProfileThatSwitchesTheBackupIsNotLoadedSilently)
{
    addStamp("{0}");
    const QString with = scratch.path(u"with.qfprofile"_s);
    const QString without = scratch.path(u"without.qfprofile"_s);
    ASSERT_TRUE(number().save(asPath(without)));
    number().setIsBackupFile(true);
    ASSERT_TRUE(number().save(asPath(with)));
    panels.answers = {{with}, {without}, {without}, {with}};
    actions().loadStamps->trigger();
    EXPECT_TRUE(alerts.informations.isEmpty()) << "nothing was switched";
    actions().loadStamps->trigger();
    EXPECT_FALSE(partOf<QCheckBox>(window(), "isBackupFile").isChecked());
    ASSERT_EQ(alerts.informations.size(), 1);
    EXPECT_TRUE(alerts.informations[0].contains(u"stamped in place off"_s));
    actions().loadStamps->trigger();
    EXPECT_EQ(alerts.informations.size(), 1);
    actions().loadStamps->trigger();
    ASSERT_EQ(alerts.informations.size(), 2);
    EXPECT_TRUE(alerts.informations[1].contains(u"stamped in place on"_s));
}

TEST_F(Configuration, WhatAProfileHoldsBeyondTheFieldsStaysUntilEdited)
{
    store::Record record = *number().getData();
    record.set(u"startNumber"_s, -5);
    record.set(u"pageRange"_s, 9);
    record.set(u"marginTop"_s, 28.34645669291339);
    number().setData(&record);
    quit();
    start();
    ui().settingTabView->setCurrentIndex(1);
    EXPECT_EQ(ui().startNumber->text(), u"-5"_s);
    EXPECT_EQ(ui().marginTop->text(), u"28.3465"_s);
    for (QLineEdit* field : {static_cast<QLineEdit*>(ui().startNumber), ui().marginTop}) {
        field->setFocus();
        QTest::keyClick(field, Qt::Key_Return);
    }
    EXPECT_EQ(number().startNumber(), -5);
    EXPECT_EQ(number().pageRange(), PageRange{9});
    EXPECT_EQ(number().marginTop(), 28.34645669291339) << "showing it rounded does not round it";
}

} // namespace
} // namespace quillfern
