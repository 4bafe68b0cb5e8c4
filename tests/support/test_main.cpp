#include "tests/support/private_home.h"

#include <QApplication>
#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    testing::InitGoogleTest(&argc, argv);
    if (testing::GTEST_FLAG(list_tests))
        return RUN_ALL_TESTS();
    const PrivateHome home;
    if (!qEnvironmentVariableIsSet("OSTRIX_TEST_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    // A zone away from UTC and with summer time, so that a mix-up of local and universal time
    // shows.
    qputenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3");
    // Test input and screenshots must not depend on a desktop's settings.
    qputenv("QT_QPA_PLATFORMTHEME", "none");
    const QApplication application(argc, argv);
    QApplication::setApplicationName(QStringLiteral("Ostrix"));
    QApplication::setQuitOnLastWindowClosed(false);
    return RUN_ALL_TESTS();
}
