// Background tasks outside the GUI thread: used for opening, saving, pasting and every full-size computation; also
// queues commands that must not start inside another.
#pragma once

#include "base/TaskControl.h"

#include <QObject>
#include <QPointer>
#include <QTimer>
#include <deque>
#include <functional>

namespace lumora {

class BackgroundTasks : public QObject {
    Q_OBJECT

  public:
    static constexpr int quietTime = 500; ///< milliseconds that a task may take before progress is shown

    explicit BackgroundTasks(QObject *parent = nullptr);

    /// The widget that shows the progress and may offer to cancel: the only one that accepts clicks and keys while it
    /// is visible.
    void setPanel(const QObject *panel) { m_panel = panel; }

    /// Runs the task in another thread and returns when it is done. Meanwhile windows repaint and timers run, but no
    /// command can start: see DoEvents. Returns false when the user cancelled it (only where that is offered); its
    /// result must then be discarded. An exception of the task is rethrown. When no thread can be created, and inside
    /// another task, it runs in this thread.
    bool run(const std::function<void()> &work, Stopping stopping = Stopping::NotOffered);
    bool isRunning() const { return m_control != nullptr; }
    /// Requests cancellation, where that is offered. The task ends at its next strip or band of rows.
    void stop();

    /// Queues the command until no task is running, no modal window and no menu is open; it never runs before this
    /// returns. Several run in the order of their arrival, each to its end. Dropped when the receiver is deleted first.
    /// Used for commands that the user does not click: a timer, a drop, the desktop's request to close.
    void whenIdle(QObject *receiver, const std::function<void()> &command);

  Q_SIGNALS:
    /// The task has taken longer than quietTime; ended() will follow.
    void began(bool canBeStopped);
    /// Percent, for tasks that report it.
    void progressed(int percent);
    void ended();
    /// The user has cancelled it.
    void stopped();

  private:
    struct Waiting {
        QPointer<QObject> receiver;
        std::function<void()> command;
    };
    bool isIdle() const;
    void look();
    void wait(TaskControl &control, const std::function<bool()> &isDone);

    TaskControl *m_control = nullptr; ///< of the running task
    bool m_canBeStopped = false;
    QPointer<const QObject> m_panel;
    std::deque<Waiting> m_waiting;
    QTimer m_look;
};

} // namespace lumora
