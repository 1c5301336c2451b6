// Long work, away from the window's thread: what opening, saving, pasting and every full-size computation goes through,
// and where commands wait that must not start inside another.
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
    static constexpr int quietTime = 500; ///< milliseconds that work may take before anybody hears of it

    explicit BackgroundTasks(QObject *parent = nullptr);

    /// The widget that shows the progress and may offer to stop: the only one that takes clicks and keys while it
    /// shows.
    void setPanel(const QObject *panel) { m_panel = panel; }

    /// Does the work in another thread and returns when it is done. Meanwhile windows repaint and timers run, but no
    /// command can start: see DoEvents. False when the user stopped it (only where that is offered); its result is then
    /// to be dropped. An exception of the work reaches the caller. Without another thread (the system may refuse one)
    /// and inside other work it is done in this one.
    bool run(const std::function<void()> &work, Stopping stopping = Stopping::NotOffered);
    bool isRunning() const { return m_control != nullptr; }
    /// Asks the work to stop, where that is offered. It ends at its next strip or band of rows.
    void stop();

    /// Has the command run from the event loop as soon as no work is under way, no modal window waits for an answer and
    /// no menu is open; never before this returns. Several run in the order of their coming, each to its end. Forgotten
    /// when the receiver goes first. What comes by itself starts its command this way: a timer, a drop, the desktop's
    /// request to close.
    void whenIdle(QObject *receiver, const std::function<void()> &command);

  Q_SIGNALS:
    /// The work has taken longer than quietTime; ended() will follow.
    void began(bool canBeStopped);
    /// Per cent, for work that knows it.
    void progressed(int percent);
    void ended();
    /// The user has stopped it.
    void stopped();

  private:
    struct Waiting {
        QPointer<QObject> receiver;
        std::function<void()> command;
    };
    bool isIdle() const;
    void look();
    void wait(TaskControl &control, const std::function<bool()> &isDone);

    TaskControl *m_control = nullptr; ///< of the work under way
    bool m_canBeStopped = false;
    QPointer<const QObject> m_panel;
    std::deque<Waiting> m_waiting;
    QTimer m_look;
};

} // namespace lumora
