#include "dialogs/FieldFormatters.h"

#include "support/Cases.h"

#include <QTest>
#include <limits>

namespace quillfern {
namespace {

TEST(FieldFormatters, ANumberFieldKeepsTheNumberItsTextBeginsWith)
{
    const Rows<const char*, std::int64_t> rows = {
        {"12abc", 12},
        {"", 0},
        {"abc", 0},
        {" 7 ", 7},
        {"-3x", -3},
        {"007", 7},
        {"99999999999999999999", std::numeric_limits<std::int64_t>::max()}};
    for (const auto& [text, value] : rows) {
        NumberField field;
        qint64 told = -1;
        QObject::connect(&field, &NumberField::integerEdited, [&](qint64 edited) { told = edited; });
        field.setText(QString::fromLatin1(text));
        QTest::keyClick(&field, Qt::Key_Return);
        EXPECT_EQ(told, value) << text;
        EXPECT_EQ(field.text(), QString::number(value)) << text;
    }
}

TEST(FieldFormatters, GuardedFieldsAlwaysHoldANumberAboveZero)
{
    const auto step = GuardTag(30001);
    const auto page = GuardTag(30002);
    const std::vector<std::tuple<GuardTag, const char*, const char*>> cases = {
        {step, "", "2"},    {page, "", "1"},    {step, "0", "2"},     {page, "000", "1"}, {step, "12", "12"},
        {page, "a7b", "7"}, {step, "abc", "2"}, {page, "1x2", "1x2"}, {step, "0x5", "2"}};
    for (const auto& [tag, typed, shown] : cases)
        EXPECT_EQ(guardedInteger(tag, QString::fromLatin1(typed)).toStdString(), shown) << typed;
}

} // namespace
} // namespace quillfern
