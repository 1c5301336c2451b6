// The pause of the print button after a print, which keeps a class from printing the same photo thirty times. The
// settings switch it on; the print button shows how long it still takes.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QString>
#include <QTimer>
#include <cstdint>
#include <optional>

namespace lumora {

struct AppContext;

/// What the clocks of the computer say, in seconds.
struct PauseClock {
    qint64 calendar = 0; ///< since 1970; anybody may set it
    qint64 running = 0;  ///< since the computer was started
    QString start;       ///< of the computer: another text after each start

    static PauseClock now();
};

/// A pause as it is kept in the settings file.
struct PrintPause {
    int left = 0;  ///< seconds that it still took at that time
    int total = 0; ///< seconds that it took in all
    PauseClock at;

    QString text() const;
    /// Nothing for a text that is none.
    static std::optional<PrintPause> fromText(const QString &text);
    /// Seconds that it still takes. While the computer has been running since, its own clock counts, which nobody can
    /// set; else the calendar does, and one that was set back lets nothing pass.
    int leftAt(const PauseClock &now) const;
};

class PrintLock : public QObject {
    Q_OBJECT

  public:
    /// Goes on with a pause that the last run of the program left, unless the settings have it switched off.
    explicit PrintLock(AppContext &ctx, QObject *parent = nullptr);

    /// Something was printed: the pause begins, where the settings want one.
    void begin();
    /// The settings may have changed: without the setting the pause ends at once, with fewer minutes it gets shorter.
    void LoadPrintTimer();

    bool isLocked() const { return secondsLeft() > 0; }
    int secondsLeft() const;
    int secondsTotal() const { return m_total; }

    /// The minutes of the setting; 0 where they are no number of 16 bits.
    std::int16_t PrintTimerMinutes = 0;

  Q_SIGNALS:
    /// Each second of a pause, and at its beginning and end.
    void changed();

  private:
    void run(int left, int total);
    void tick();
    void keep();

    AppContext &m_ctx;
    QElapsedTimer m_clock; ///< since the pause was begun or gone on with
    QTimer m_timer;
    int m_left = 0; ///< seconds when m_clock was started
    int m_total = 0;
};

} // namespace lumora
