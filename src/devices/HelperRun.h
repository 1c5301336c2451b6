// One run of the helper program lumora-devices: started, listened to, and killed when it takes too long. What talks to
// a driver or to the print system goes through it, so that neither can stop a window.
#pragma once

#include "devices/HelperProcess.h"
#include "devices/TimeLimit.h"

#include <QObject>
#include <QString>

namespace lumora {

class HelperRun : public QObject {
    Q_OBJECT

  public:
    /// `helper` is the program to run; by default lumora-devices beside the program file.
    explicit HelperRun(const QString &helper = {}, QObject *parent = nullptr);

    /// Starts it and returns at once; while it runs, nothing new begins. After `timeLimit` milliseconds (1 or more) it
    /// is killed.
    void start(const QStringList &arguments, int timeLimit);
    bool isRunning() const { return m_running; }
    /// Asks it to end by itself (SIGTERM); finished() follows once it has.
    void askToEnd() { m_process.terminate(); }

  Q_SIGNALS:
    /// Once for each start, never before it returns: what the program has printed until it ended, which is incomplete
    /// when it was killed or crashed, and empty when it is missing or printed more than 1 MB.
    void finished(const QByteArray &output);

  private:
    void finish();

    HelperProcess m_process; ///< killed when this is destroyed
    TimeLimit m_limit{[this] { m_process.kill(); }};
    QByteArray m_output;
    bool m_running = false;
};

/// The same for a thread without windows: waits for the output. When the thread's current TaskControl is cancelled, the
/// program is asked to end, and killed where it does not in two seconds; what it printed until then is the output.
QByteArray outputOfHelper(const QString &helper, const QStringList &arguments, int timeLimit);

} // namespace lumora
