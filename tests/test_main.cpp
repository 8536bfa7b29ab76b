// Test main: headless Qt, a 96 pixels-per-inch screen and an application
// object, so that every suite renders the same pixels on every machine.
#include "platform/system.h"

#include <QApplication>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    faroven::SetScreenPixelsPerInch(96);
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
