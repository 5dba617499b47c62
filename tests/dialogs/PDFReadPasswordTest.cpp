#include "dialogs/PDFReadPasswordWindowController.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <gtest/gtest.h>

namespace quillfern {
namespace {

TEST(PDFReadPassword, TellsWhatWasTypedWhenItIsApplied)
{
    QWidget window;
    PDFReadPasswordWindowController dialog(&window);
    auto& field = *dialog.findChild<QLineEdit*>();
    QStringList told;
    QObject::connect(&dialog, &PDFReadPasswordWindowController::PDFReadPasswordWindowControllerDidFinish,
                     [&](const QString& password) { told.append(password); });
    EXPECT_EQ(dialog.pdfReadPassword(), QString());
    const struct
    {
        const char* typed; ///< replaces the previous value, which is selected; null to type nothing
        const char* end;   ///< a button, or a key in the field
        const char* password;
        bool isTold;
    } rows[] = {
        {nullptr, "applyBtn", "", true},
        {"open sesame", "Return", "open sesame", true},
        {nullptr, "applyBtn", "open sesame", true}, // the value stays
        {"other", "Escape", "other", false},        // typed, but not applied
        {"another", "cancelBtn", "another", false},
        {"", "applyBtn", "", true},
    };
    for (const auto& row : rows) {
        told.clear();
        dialog.open();
        EXPECT_EQ(dialog.focusWidget(), &field);
        if (row.typed && !*row.typed)
            QTest::keyClick(&field, Qt::Key_Delete);
        else if (row.typed)
            QTest::keyClicks(&field, QString::fromLatin1(row.typed));
        const QString end = QString::fromLatin1(row.end);
        if (auto* const button = dialog.findChild<QPushButton*>(end))
            QTest::mouseClick(button, Qt::LeftButton);
        else
            QTest::keyClick(&field, end == QLatin1String("Return") ? Qt::Key_Return : Qt::Key_Escape);
        const QString password = QString::fromLatin1(row.password);
        EXPECT_EQ(dialog.pdfReadPassword(), password);
        EXPECT_EQ(told, row.isTold ? QStringList{password} : QStringList()) << row.end;
        EXPECT_FALSE(dialog.isVisible()) << row.end;
    }
}

TEST(PDFReadPassword, IsShownOnlyForAsLongAsTheUserWants)
{
    QWidget window;
    PDFReadPasswordWindowController dialog(&window);
    auto& field = *dialog.findChild<QLineEdit*>();
    dialog.open();
    QTest::keyClicks(&field, QStringLiteral("secret"));
    EXPECT_NE(field.displayText(), field.text());
    QTest::keyClick(&field, Qt::Key_Tab);
    QTest::keyClick(dialog.focusWidget(), Qt::Key_Space);
    EXPECT_EQ(field.displayText(), QStringLiteral("secret"));
    dialog.reject();
    dialog.open();
    EXPECT_NE(field.displayText(), field.text());
}

} // namespace
} // namespace quillfern
