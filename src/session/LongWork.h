// Work that may take a while, with the window alive meanwhile: what tools wrap their full-size computations in.
#pragma once

#include <QObject>
#include <functional>

namespace lumora {

class LongWork : public QObject {
    Q_OBJECT

  public:
    static constexpr int quietTime = 500; ///< milliseconds that work may take before anybody hears of it

    using QObject::QObject;

    /// Does the work in another thread and returns when it is done. Meanwhile windows repaint and timers run, but no
    /// click or key gets in. An exception of the work reaches the caller. Without another thread (the system may refuse
    /// one) and inside other work it is done in this one.
    void run(const std::function<void()> &work);

  Q_SIGNALS:
    /// The work has taken longer than quietTime; ended() will follow.
    void began();
    void ended();

  private:
    bool m_running = false;
};

} // namespace lumora
