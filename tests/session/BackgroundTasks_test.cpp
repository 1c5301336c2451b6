// Tasks in another thread while the window stays responsive: progress, cancellation, and that no command starts inside
// a task.
#include "session/BackgroundTasks.h"

#include "session/DoEvents.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <QMimeData>
#include <QTimer>
#include <QWindow>
#include <chrono>
#include <gtest/gtest.h>
#include <stdexcept>
#include <thread>

namespace lumora {
namespace {

using namespace std::chrono_literals;

constexpr auto isHeardOf = std::chrono::milliseconds(BackgroundTasks::quietTime) * 2;

void turnEvents(std::chrono::milliseconds time) {
    bool over = false;
    QTimer::singleShot(time, [&] { over = true; });
    while (!over) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
}

TEST(BackgroundTasks, WindowsStayResponsiveAndAreToldOfSlowTasks) {
    struct Case {
        std::chrono::milliseconds takes;
        Stopping stopping;
        QStringList heard;
    };
    for (const Case &c : {Case{0ms, Stopping::Offered, {}}, Case{60ms, Stopping::Offered, {}},
                          Case{isHeardOf, Stopping::NotOffered, {"began", "40", "ended"}},
                          Case{isHeardOf, Stopping::Offered, {"began to be stopped", "40", "ended"}}}) {
        BackgroundTasks tasks;
        QStringList heard;
        QObject::connect(&tasks, &BackgroundTasks::began,
                         [&](bool canBeStopped) { heard << (canBeStopped ? "began to be stopped" : "began"); });
        QObject::connect(&tasks, &BackgroundTasks::progressed, [&](int percent) { heard << QString::number(percent); });
        QObject::connect(&tasks, &BackgroundTasks::ended, [&] { heard << "ended"; });
        int ticks = 0;
        QTimer timer;
        QObject::connect(&timer, &QTimer::timeout, [&] { ++ticks; });
        timer.start(5);
        std::thread::id where;
        EXPECT_TRUE(tasks.run(
            [&] {
                where = std::this_thread::get_id();
                TaskControl::current()->setProgress(2, 5);
                std::this_thread::sleep_for(c.takes);
            },
            c.stopping));
        EXPECT_NE(where, std::this_thread::get_id());
        EXPECT_EQ(ticks > 0, c.takes > 0ms) << c.takes.count();
        EXPECT_EQ(heard, c.heard) << c.takes.count();
    }
}

TEST(BackgroundTasks, ErrorsReachTheCallerAndNestedTasksRun) {
    BackgroundTasks tasks;
    EXPECT_THROW(tasks.run([] { throw std::runtime_error("no"); }), std::runtime_error);
    bool inner = false;
    QTimer::singleShot(0, [&] { tasks.run([&] { inner = true; }); });
    tasks.run([] { std::this_thread::sleep_for(100ms); });
    EXPECT_TRUE(inner);
    int again = 0;
    tasks.run([&] { again = 1; });
    EXPECT_EQ(again, 1) << "after an error and a nested task";
}

TEST(BackgroundTasks, OnlyTasksThatOfferItAreCancelled) {
    for (const Stopping stopping : {Stopping::NotOffered, Stopping::Offered}) {
        const bool offered = stopping == Stopping::Offered;
        BackgroundTasks tasks;
        int told = 0;
        QObject::connect(&tasks, &BackgroundTasks::stopped, [&] { ++told; });
        QTimer::singleShot(20, [&] { tasks.stop(); });
        bool seen = false;
        const bool whole = tasks.run(
            [&] {
                for (int turn = 0; turn < 300 && !seen; ++turn) {
                    std::this_thread::sleep_for(1ms);
                    seen = TaskControl::isCurrentCancelled();
                }
            },
            stopping);
        EXPECT_EQ(seen, offered);
        EXPECT_EQ(whole, !offered);
        EXPECT_EQ(told, offered ? 1 : 0);
        EXPECT_TRUE(tasks.run([] {}, Stopping::Offered)) << "the next work is not stopped by it";
    }
}

TEST(BackgroundTasks, QueuedCommandsRunInOrderAndNeverInsideATaskOrUnderAQuestion) {
    BackgroundTasks tasks;
    QStringList done;
    const auto note = [&](const QString &name) {
        return [&, name] {
            EXPECT_FALSE(tasks.isRunning() || isInDoEvents()) << qPrintable(name);
            done << name;
        };
    };
    QObject here;
    auto gone = std::make_unique<QObject>();
    tasks.whenIdle(&here, note("before"));
    EXPECT_TRUE(done.isEmpty()) << "never before it returns";
    // A timer that fires inside the task queues a command, and that command runs its own task.
    QTimer::singleShot(20, [&] {
        tasks.whenIdle(&here, [&] {
            note("timer")();
            tasks.whenIdle(&here, note("later"));
            tasks.run([] { std::this_thread::sleep_for(100ms); });
            note("still timer")();
        });
        tasks.whenIdle(gone.get(), note("nobody's"));
        tasks.whenIdle(&here, note("last"));
        gone.reset();
    });
    tasks.run([] { std::this_thread::sleep_for(150ms); });
    EXPECT_TRUE(done.isEmpty());
    turnEvents(400ms);
    EXPECT_EQ(done, QStringList({"before", "timer", "still timer", "last", "later"}));

    done.clear();
    for (const bool isQuestion : {true, false}) {
        QWindow over;
        over.setModality(isQuestion ? Qt::ApplicationModal : Qt::NonModal);
        over.setFlags(isQuestion ? Qt::Dialog : Qt::Popup);
        over.show();
        tasks.whenIdle(&here, note(isQuestion ? "after the question" : "after the menu"));
        turnEvents(150ms);
        EXPECT_EQ(done.size(), isQuestion ? 0 : 1);
        over.hide();
        turnEvents(150ms);
        EXPECT_EQ(done.size(), isQuestion ? 1 : 2);
    }
}

/// Accepts and records every event.
class Window : public QWindow {
  public:
    QStringList got;

  protected:
    bool event(QEvent *event) override {
        switch (event->type()) {
        case QEvent::KeyPress:
            got << "key";
            return true;
        case QEvent::DragEnter:
        case QEvent::Drop:
            got << "drag";
            event->accept();
            return true;
        default:
            return QWindow::event(event);
        }
    }
};

TEST(DoEvents, RunsTimersAndBlocksKeysAndDrags) {
    Window window;
    bool ticked = false;
    QMimeData data;
    data.setText("a photo");
    QDragEnterEvent drag(QPoint(1, 1), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    const auto send = [&] {
        ticked = true;
        QKeyEvent key(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QCoreApplication::sendEvent(&window, &key);
        drag.accept();
        QCoreApplication::sendEvent(&window, &drag);
    };
    QTimer::singleShot(0, send);
    DoEvents();
    EXPECT_TRUE(ticked);
    EXPECT_EQ(window.got, QStringList());
    EXPECT_FALSE(drag.isAccepted());
    send();
    EXPECT_EQ(window.got, QStringList({"key", "drag"})) << "afterwards all is let in again";
}

TEST(DoEvents, APanelTakesWhatIsMeantForIt) {
    QObject panel;
    QObject button(&panel);
    QObject other;
    QHash<const QObject *, int> got;
    struct Count : QObject {
        QHash<const QObject *, int> &counts;
        explicit Count(QHash<const QObject *, int> &to) : counts(to) {}
        bool eventFilter(QObject *watched, QEvent *event) override {
            counts[watched] += event->type() == QEvent::MouseButtonPress ? 1 : 0;
            return false;
        }
    } count(got);
    for (QObject *one : {&panel, &button, &other}) {
        one->installEventFilter(&count);
    }
    QTimer::singleShot(0, [&] {
        for (QObject *one : {&panel, &button, &other}) {
            QEvent press(QEvent::MouseButtonPress);
            QCoreApplication::sendEvent(one, &press);
        }
    });
    DoEvents(&panel);
    EXPECT_EQ(got.value(&panel), 1);
    EXPECT_EQ(got.value(&button), 1);
    EXPECT_EQ(got.value(&other), 0);
}

} // namespace
} // namespace lumora
