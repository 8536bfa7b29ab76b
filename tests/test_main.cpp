// Test main: headless Qt, a 96 pixels-per-inch screen, a '.' decimal
// separator and an application object, so that every suite renders the same
// pixels and texts on every machine.
#include "platform/convert.h"
#include "platform/system.h"

#include <QApplication>
#include <gtest/gtest.h>

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    faroven::SetScreenPixelsPerInch(96);
    faroven::SetDecimalSeparator(QLatin1Char('.'));
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
