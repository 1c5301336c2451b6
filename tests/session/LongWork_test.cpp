#include "session/LongWork.h"

#include <QTimer>
#include <chrono>
#include <gtest/gtest.h>
#include <stdexcept>
#include <thread>

namespace lumora {
namespace {

using namespace std::chrono_literals;

TEST(LongWork, WindowsGoOnAndHearOfWhatTakesLong) {
    struct Case {
        std::chrono::milliseconds takes;
        bool isHeardOf;
    };
    for (const Case &c :
         {Case{0ms, false}, Case{60ms, false}, Case{std::chrono::milliseconds(LongWork::quietTime) * 2, true}}) {
        LongWork work;
        QStringList heard;
        QObject::connect(&work, &LongWork::began, [&] { heard << "began"; });
        QObject::connect(&work, &LongWork::ended, [&] { heard << "ended"; });
        int ticks = 0;
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, [&] { ++ticks; });
        timer.start(5);
        std::thread::id where;
        work.run([&] {
            where = std::this_thread::get_id();
            std::this_thread::sleep_for(c.takes);
        });
        EXPECT_NE(where, std::this_thread::get_id());
        EXPECT_EQ(ticks > 0, c.takes > 0ms) << c.takes.count();
        EXPECT_EQ(heard, c.isHeardOf ? QStringList({"began", "ended"}) : QStringList()) << c.takes.count();
    }
}

TEST(LongWork, ErrorsReachTheCallerAndWorkInsideWorkIsDone) {
    LongWork work;
    EXPECT_THROW(work.run([] { throw std::runtime_error("no"); }), std::runtime_error);
    bool inner = false;
    QTimer::singleShot(0, [&] { work.run([&] { inner = true; }); });
    work.run([] { std::this_thread::sleep_for(100ms); });
    EXPECT_TRUE(inner);
    int again = 0;
    work.run([&] { again = 1; });
    EXPECT_EQ(again, 1) << "after an error and work inside work";
}

} // namespace
} // namespace lumora
