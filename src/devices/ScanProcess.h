// Asks a scanner for its options or has it scan: the helper program lumora-devices does it, this class starts it, emits
// what comes and ends it. A driver that hangs or crashes costs a scan, nothing else.
#pragma once

#include "devices/HelperProcess.h"
#include "devices/ScanOption.h"
#include "devices/ScanProtocol.h"
#include "devices/TimeLimit.h"

#include <QObject>

namespace lumora {

/// Needs the event loop of its thread. One thing at a time; can be used again after finished().
class ScanProcess : public QObject {
    Q_OBJECT

  public:
    /// Milliseconds.
    struct Limits {
        int silence = 120'000; ///< without anything from the helper: a lamp may need a minute to warm up
        int closing = 5'000;   ///< from the last message, or from cancel(), to the helper's end
    };

    /// `helper` is the program to run; by default lumora-devices beside the program file.
    explicit ScanProcess(const QString &helper = {}, QObject *parent = nullptr);

    void setLimits(const Limits &limits) { m_limits = limits; }

    /// Asks for what can be set once these values are set; the answer comes with optionsRead() before finished().
    void readOptions(const QString &device, const QList<ScanValue> &values = {});
    /// Scans one picture with these settings, or with automaticScan() followed by them.
    enum class Settings { AsGiven, Automatic };
    void scan(const QString &device, Settings settings, const QList<ScanValue> &values = {});
    /// Asks the scanner to stop, and kills the helper when it does not; finished(Cancelled) follows. Without effect
    /// when nothing runs.
    void cancel();
    bool isRunning() const { return m_running; }

  Q_SIGNALS:
    void optionsRead(const QList<lumora::ScanOption> &options);
    /// A pass over the paper begins; its lines follow as bytes.
    void frameBegan(const lumora::ScanFrame &frame);
    void dataRead(const QByteArray &bytes);
    /// Once for each start, never before the call that started it returns.
    void finished(lumora::ScanStatus status);

  private:
    void start(const QStringList &arguments);
    void take();
    void takeMessage(const ScanMessage &message);
    void giveUp();
    void finish();

    Limits m_limits;
    HelperProcess m_process; ///< killed when this is destroyed, without finished()
    TimeLimit m_limit{[this] { giveUp(); }};
    ScanMessages m_messages;
    std::optional<ScanStatus> m_status; ///< how it ends, once that is known
    bool m_running = false;
};

} // namespace lumora
