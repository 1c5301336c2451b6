#include "session/BackgroundTasks.h"

#include "session/DoEvents.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QScopeGuard>
#include <QWindow>
#include <algorithm>
#include <chrono>
#include <future>
#include <system_error>

namespace lumora {

namespace {

constexpr std::chrono::milliseconds frame(15); // between two checks of the windows
constexpr int patience = 50;                   // milliseconds between two checks whether a command may start

bool isMenuOpen() {
    const QWindowList windows = QGuiApplication::topLevelWindows();
    return std::any_of(windows.begin(), windows.end(), [](const QWindow *window) {
        return window->isVisible() && (window->flags() & Qt::WindowType_Mask) == Qt::Popup;
    });
}

std::future<void> started(const std::function<void()> &work, TaskControl &control) {
    try {
        return std::async(std::launch::async, [&work, &control] {
            const TaskControl::Scope scope(&control);
            work();
        });
    } catch (const std::system_error &) {
        return {};
    }
}

} // namespace

BackgroundTasks::BackgroundTasks(QObject *parent) : QObject(parent) {
    m_look.setSingleShot(true);
    connect(&m_look, &QTimer::timeout, this, &BackgroundTasks::look);
}

bool BackgroundTasks::run(const std::function<void()> &work, Stopping stopping) {
    TaskControl control;
    std::future<void> done = isRunning() ? std::future<void>() : started(work, control);
    if (!done.valid()) {
        work();
        return true;
    }
    m_control = &control;
    m_canBeStopped = stopping == Stopping::Offered;
    wait(control, [&done] { return done.wait_for(frame) == std::future_status::ready; });
    m_control = nullptr;
    if (!m_waiting.empty()) {
        m_look.start(0);
    }
    done.get();
    if (control.isCancelled()) {
        Q_EMIT stopped();
    }
    return !control.isCancelled();
}

void BackgroundTasks::wait(TaskControl &control, const std::function<bool()> &isDone) {
    QElapsedTimer clock;
    clock.start();
    bool told = false;
    const auto tellEnd = qScopeGuard([&] {
        if (told) {
            Q_EMIT ended();
        }
    });
    int percent = -1;
    while (!isDone()) {
        if (!told && clock.hasExpired(quietTime)) {
            told = true;
            // Clicks and keys from before the panel was shown were not meant for it.
            DoEvents(this);
            Q_EMIT began(m_canBeStopped);
        }
        if (told && percent != control.percent()) {
            percent = control.percent();
            Q_EMIT progressed(percent);
        }
        DoEvents(told ? m_panel.data() : nullptr);
    }
}

void BackgroundTasks::stop() {
    if (m_control != nullptr && m_canBeStopped) {
        m_control->cancel();
    }
}

void BackgroundTasks::whenIdle(QObject *receiver, const std::function<void()> &command) {
    m_waiting.push_back({receiver, command});
    if (!m_look.isActive()) {
        m_look.start(0);
    }
}

bool BackgroundTasks::isIdle() const {
    return !isRunning() && !isInDoEvents() && QGuiApplication::modalWindow() == nullptr && !isMenuOpen();
}

void BackgroundTasks::look() {
    if (m_waiting.empty()) {
        return;
    }
    if (!isIdle()) {
        m_look.start(patience);
        return;
    }
    const Waiting next = std::move(m_waiting.front());
    m_waiting.pop_front();
    if (!m_waiting.empty()) {
        m_look.start(0); // before the command, which may run its own event loop
    }
    if (next.receiver != nullptr) {
        next.command();
    }
}

} // namespace lumora
