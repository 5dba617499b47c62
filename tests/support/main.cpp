#include "platform/drawing/FontCatalog.h"

#ifdef QUILLFERN_WITH_WINDOWS
#include <QApplication>
using TestApplication = QApplication;
#else
#include <QGuiApplication>
using TestApplication = QGuiApplication;
#endif
#include <QLoggingCategory>
#include <clocale>
#include <gtest/gtest.h>

int main(int argc, char** argv)
{
    testing::InitGoogleTest(&argc, argv);
    if (GTEST_FLAG_GET(list_tests)) return RUN_ALL_TESTS(); // while building: needs no screen, no fonts
    qputenv("QT_QPA_PLATFORM", "offscreen");
    if (!qEnvironmentVariableIsSet("XDG_RUNTIME_DIR")) qputenv("XDG_RUNTIME_DIR", "/tmp");
    // In the environment, so that programs which a test starts inherit the setting.
    if (!qEnvironmentVariableIsSet("FONTCONFIG_FILE"))
        qputenv("FONTCONFIG_FILE", qgetenv("QUILLFERN_BIN_DIR") + "/../tests/fonts.conf");
    quillfern::drawing::FontCatalog::preferEmbeddableFonts();
    // Hides warnings about what the offscreen platform cannot do with windows.
    QLoggingCategory::setFilterRules(QStringLiteral("qt.qpa.*=false"));
    TestApplication application(argc, argv);
    std::setlocale(LC_NUMERIC, "C");
    return RUN_ALL_TESTS();
}
