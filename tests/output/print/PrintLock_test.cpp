#include "output/print/PrintLock.h"

#include "output/print/PrintButton.h"
#include "session/AppContext.h"
#include "support/SettingsFile.h"
#include "support/ShellCheck.h"

#include <QSignalSpy>
#include <QTest>

namespace lumora {
namespace {

using test::setting;
using test::writeSetting;

TEST(PrintPause, LosesTheTimeThatHasPassedWhateverTheCalendarSays) {
    const PrintPause pause{50, 60, {1'000'000, 500, "monday"}};
    struct Row {
        const char *what;
        PauseClock now;
        int left;
    };
    const Row rows[] = {
        {"at once", {1'000'000, 500, "monday"}, 50},
        {"later", {1'000'020, 520, "monday"}, 30},
        {"over", {1'000'070, 570, "monday"}, 0},
        {"calendar set back", {900'000, 520, "monday"}, 30},
        {"calendar set forward", {2'000'000, 520, "monday"}, 30},
        {"computer restarted", {1'000'020, 7, "tuesday"}, 30},
        {"restarted, calendar set back", {900'000, 7, "tuesday"}, 50},
        {"no such clock", {1'000'020, 0, ""}, 30},
    };
    for (const Row &row : rows) {
        EXPECT_EQ(pause.leftAt(row.now), row.left) << row.what;
    }
}

TEST(PrintPause, IsKeptAsATextAndNonsenseIsNoPause) {
    for (const char *start : {"monday", ""}) {
        const PrintPause pause{50, 60, {5'000'000'000, 500, start}};
        const auto read = PrintPause::fromText(pause.text());
        ASSERT_TRUE(read);
        EXPECT_EQ(read->text(), pause.text());
    }
    for (const char *text : {"", "x", "50", "50 60 1", "0 60 1 1 a", "-5 60 1 1 a", "70 60 1 1 a", "5 x 1 1 a",
                             "5 60 1 1 a b", "99999999999 99999999999 1 1"}) {
        EXPECT_FALSE(PrintPause::fromText(text)) << text;
    }
}

class PrintLockTest : public test::Shell {
  protected:
    void set(const char *timed, const char *minutes) {
        writeSetting(context, "Printer", "Timed", timed);
        writeSetting(context, "Printer", "Timer", minutes);
    }
};

TEST_F(PrintLockTest, BeginsOnlyWhereTheSettingsWantIt) {
    struct Row {
        const char *timed, *minutes;
        int seconds;
    };
    const Row rows[] = {{"0", "5", 0},     {"1", "5", 300},     {"1", "", 0},  {"1", "blue", 60},
                        {"1", "0", 0},     {"1", "-3", 0},      {"x", "5", 0}, {"1", "32767", 32767 * 60},
                        {"1", "32768", 0}, {"1", "9999999", 0}, {"", "5", 0}};
    for (const Row &row : rows) {
        set(row.timed, row.minutes);
        PrintLock lock(context);
        EXPECT_FALSE(lock.isLocked());
        lock.begin();
        const int expected = QString(row.minutes).isEmpty() ? 60 : row.seconds;
        EXPECT_NEAR(lock.secondsLeft(), expected, 15) << row.timed << ' ' << row.minutes;
        EXPECT_EQ(lock.secondsTotal(), expected) << row.timed << ' ' << row.minutes;
        writeSetting(context, "Printer", "Pause", "");
    }
}

TEST_F(PrintLockTest, OutlivesARestartAndAClockThatIsSetBack) {
    set("1", "2");
    PrintLock(context).begin();
    {
        const PrintLock again(context);
        EXPECT_NEAR(again.secondsLeft(), 120, 15);
    }
    auto kept = PrintPause::fromText(setting(context, "Printer", "Pause"));
    ASSERT_TRUE(kept);
    kept->at.calendar += 1'000'000; // the calendar was ahead when it was kept
    kept->left = 90;
    kept->at.start = "another";
    writeSetting(context, "Printer", "Pause", kept->text());
    EXPECT_NEAR(PrintLock(context).secondsLeft(), 90, 15);
    kept->at.calendar = PauseClock::now().calendar - 1000;
    writeSetting(context, "Printer", "Pause", kept->text());
    EXPECT_FALSE(PrintLock(context).isLocked()) << "it has passed while the computer was off";
}

TEST_F(PrintLockTest, AGrownUpLiftsItAtOnce) {
    set("1", "10");
    PrintLock lock(context);
    lock.begin();
    const QSignalSpy changed(&lock, &PrintLock::changed);
    set("1", "3");
    lock.LoadPrintTimer();
    EXPECT_NEAR(lock.secondsLeft(), 180, 15);
    EXPECT_EQ(changed.count(), 1);
    set("0", "3");
    lock.LoadPrintTimer();
    EXPECT_FALSE(lock.isLocked());
    EXPECT_EQ(changed.count(), 2);
    set("1", "3");
    EXPECT_FALSE(PrintLock(context).isLocked()) << "lifted for good";
}

TEST_F(PrintLockTest, CountsDownAndEnds) {
    set("1", "1");
    writeSetting(context, "Printer", "Pause", PrintPause{3, 60, PauseClock::now()}.text());
    PrintLock lock(context);
    EXPECT_TRUE(lock.isLocked());
    QSignalSpy changed(&lock, &PrintLock::changed);
    EXPECT_TRUE(
        QTest::qWaitFor([&] { return !lock.isLocked() && setting(context, "Printer", "Pause").isEmpty(); }, 20'000));
    EXPECT_GE(changed.count(), 1);
}

TEST(PrintButton, ShowsALevelThatSinksAndTheTimeLeft) {
    PrintButton button("print", PictureButton::CaptionPlace::None);
    button.resize(60, 60);
    button.setEnabled(false);
    const auto blue = [&](int left, int total) {
        button.setPause(left, total);
        const QImage shown = button.grab().toImage();
        int count = 0;
        for (int y = 0; y < shown.height(); ++y) {
            for (int x = 0; x < shown.width(); ++x) {
                const QColor pixel = shown.pixelColor(x, y);
                count += pixel.blue() - pixel.red() > 30;
            }
        }
        return count;
    };
    const int full = blue(600, 600);
    EXPECT_GT(full, 60 * 60 / 2);
    EXPECT_NEAR(blue(300, 600), full / 2.0, full / 8.0);
    EXPECT_LT(blue(30, 600), full / 6);
    EXPECT_EQ(blue(0, 600), 0);
    const struct {
        int left;
        const char *shown;
    } rows[] = {{600, "10:00"}, {61, "1:01"}, {60, "1:00"}, {59, "59"}, {1, "1"}, {0, ""}};
    for (const auto &[left, shown] : rows) {
        button.setPause(left, 600);
        EXPECT_EQ(button.pauseText(), shown);
    }
}

} // namespace
} // namespace lumora
