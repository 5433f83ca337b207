#include <gtest/gtest.h>

#include <QGuiApplication>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_QUICK_BACKEND", "software");
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent"); // tests leave the desktop alone
    qputenv("QT_ACCESSIBILITY", "1");
    const QGuiApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
