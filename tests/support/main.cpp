// Runs the tests of one room inside a QApplication without a display.
#include <QApplication>
#include <QStandardPaths>
#include <gtest/gtest.h>

/// Qt keeps one gesture recogniser a scroller for the life of the program.
extern "C" const char *__lsan_default_suppressions() { // NOLINT(bugprone-reserved-identifier) the sanitizer asks for it
    return "leak:QScroller::grabGesture\n";
}

int main(int argc, char **argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QStandardPaths::setTestModeEnabled(true);
    QApplication application(argc, argv);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
