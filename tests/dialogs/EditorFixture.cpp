#include "dialogs/EditorFixture.h"

#include <QAbstractButton>
#include <QAccessible>
#include <QComboBox>
#include <QKeySequence>
#include <QLabel>
#include <QSet>

namespace quillfern {

void EditorFixture::expectUsable(QWidget& window)
{
    EXPECT_LE(window.minimumSizeHint().width(), 1000);
    EXPECT_LE(window.minimumSizeHint().height(), 580);
    QSet<const QWidget*> reached;
    for (int i = 0; i < 60; ++i) {
        reached.insert(QApplication::focusWidget());
        QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
    }
    QSet<QString> keys;
    for (QWidget* each : window.findChildren<QWidget*>()) {
        const auto* label = qobject_cast<QLabel*>(each);
        const auto* button = qobject_cast<QAbstractButton*>(each);
        const QString key = QKeySequence::mnemonic(label && label->buddy() ? label->text()
                                                   : button                ? button->text()
                                                                           : QString())
                                .toString();
        if (!key.isEmpty()) {
            EXPECT_FALSE(keys.contains(key)) << key.toStdString();
            keys.insert(key);
        }
        const bool isControl = each->focusPolicy() & Qt::TabFocus && !each->focusProxy() &&
                               each->isVisible() &&
                               each->objectName() != QLatin1String("qt_spinbox_lineedit");
        if (!isControl || qobject_cast<QComboBox*>(each->parentWidget())) continue;
        const QString name =
            each->objectName() + QLatin1Char(' ') + QLatin1String(each->metaObject()->className());
        QAccessibleInterface* accessible = QAccessible::queryAccessibleInterface(each);
        ASSERT_TRUE(accessible) << name.toStdString();
        EXPECT_FALSE(accessible->text(QAccessible::Name).isEmpty()) << name.toStdString();
        EXPECT_FALSE(each->toolTip().isEmpty()) << name.toStdString();
        EXPECT_TRUE(reached.contains(each) || !each->isEnabled()) << name.toStdString();
    }
    EXPECT_GT(keys.size(), 10);
}

} // namespace quillfern
