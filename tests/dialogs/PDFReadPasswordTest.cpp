#include "dialogs/PDFReadPasswordWindowController.h"

#include "support/Cases.h"

#include <QLineEdit>
#include <QPushButton>
#include <QTest>

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
    // What is typed replaces the previous value, which is selected; null to type nothing. The end is a
    // button, or a key in the field.
    const Rows<const char*, const char*, const char*, bool> rows = {
        {nullptr, "applyBtn", "", true},
        {"open sesame", "Return", "open sesame", true},
        {nullptr, "applyBtn", "open sesame", true}, // the value stays
        {"other", "Escape", "other", false},        // typed, but not applied
        {"another", "cancelBtn", "another", false},
        {"", "applyBtn", "", true},
    };
    for (const auto& [typed, ending, expected, isTold] : rows) {
        told.clear();
        dialog.open();
        EXPECT_EQ(dialog.focusWidget(), &field);
        if (typed) QTest::keyClick(&field, Qt::Key_Delete);
        QTest::keyClicks(&field, QString::fromLatin1(typed));
        if (auto* const button = dialog.findChild<QPushButton*>(QString::fromLatin1(ending)))
            QTest::mouseClick(button, Qt::LeftButton);
        else
            QTest::keyClick(&field, QByteArray(ending) == "Return" ? Qt::Key_Return : Qt::Key_Escape);
        const QString password = QString::fromLatin1(expected);
        EXPECT_EQ(dialog.pdfReadPassword(), password);
        EXPECT_EQ(told, isTold ? QStringList{password} : QStringList()) << ending;
        EXPECT_FALSE(dialog.isVisible()) << ending;
    }
}

TEST(PDFReadPassword, IsShownOnlyForAsLongAsTheUserWants)
{
    QWidget window;
    PDFReadPasswordWindowController dialog(&window);
    auto& field = *dialog.findChild<QLineEdit*>();
    dialog.open();
    QTest::keyClicks(&field, u"secret"_s);
    EXPECT_NE(field.displayText(), field.text());
    QTest::keyClick(&field, Qt::Key_Tab);
    QTest::keyClick(dialog.focusWidget(), Qt::Key_Space);
    EXPECT_EQ(field.displayText(), u"secret"_s);
    dialog.reject();
    dialog.open();
    EXPECT_NE(field.displayText(), field.text());
}

} // namespace
} // namespace quillfern
