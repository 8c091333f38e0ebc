// Runs the tests of the windows without a screen, on a desktop bus of their own.
#include <gtest/gtest.h>

#include <QApplication>

#include "support/desktop_bus.h"
#include "ui/look/theme_controller.h"

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    testing::InitGoogleTest(&argc, argv);
    brindlehum::test::DesktopBus bus;
    QApplication app(argc, argv);
    brindlehum::ThemeController theme;
    return RUN_ALL_TESTS();
}
