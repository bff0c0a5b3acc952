// main() for tests that draw: pictures and fonts need a QGuiApplication, and tests
// that hand work to the main thread need its event loop. Runs offscreen by default.
#include <QGuiApplication>
#include <gtest/gtest.h>

int main(int argc, char **argv)
{
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication app(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
