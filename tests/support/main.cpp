// Runs the tests of one module inside a QApplication without a display.
#include <QApplication>
#include <QStandardPaths>
#include <gtest/gtest.h>

int main(int argc, char **argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    qputenv("LC_ALL", "C.UTF-8"); // English, wherever the tests run
    qunsetenv("LANGUAGE");
    qputenv("SPEECHD_ADDRESS", "unix_socket:/nowhere/speech"); // a service that a test has started would stay
    QStandardPaths::setTestModeEnabled(true);
    QApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
