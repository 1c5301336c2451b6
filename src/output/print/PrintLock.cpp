#include "output/print/PrintLock.h"

#include "session/AppContext.h"

#include <QDateTime>
#include <QFile>
#include <QStringList>
#include <algorithm>
#include <ctime>
#include <limits>

namespace lumora {

namespace {

constexpr int secondsBetweenKeeping = 20; // so much of a pause may be counted twice after a crash

} // namespace

PauseClock PauseClock::now() {
    PauseClock clock{QDateTime::currentSecsSinceEpoch(), 0, {}};
    timespec sinceStart{};
    if (::clock_gettime(CLOCK_BOOTTIME, &sinceStart) == 0) {
        clock.running = sinceStart.tv_sec;
    }
    QFile start("/proc/sys/kernel/random/boot_id");
    if (start.open(QIODevice::ReadOnly)) {
        clock.start = QString::fromLatin1(start.readAll().trimmed());
    }
    return clock;
}

QString PrintPause::text() const {
    return QStringLiteral("%1 %2 %3 %4 %5")
        .arg(QString::number(left), QString::number(total), QString::number(at.calendar), QString::number(at.running),
             at.start)
        .trimmed();
}

std::optional<PrintPause> PrintPause::fromText(const QString &text) {
    const QStringList fields = text.split(' ', Qt::SkipEmptyParts);
    if (fields.size() < 4 || fields.size() > 5) {
        return std::nullopt;
    }
    bool numbers[4] = {};
    const PrintPause pause{fields[0].toInt(&numbers[0]),
                           fields[1].toInt(&numbers[1]),
                           {fields[2].toLongLong(&numbers[2]), fields[3].toLongLong(&numbers[3]), fields.value(4)}};
    const bool sound = std::all_of(std::begin(numbers), std::end(numbers), [](bool one) { return one; });
    return sound && pause.left > 0 && pause.left <= pause.total ? std::optional(pause) : std::nullopt;
}

int PrintPause::leftAt(const PauseClock &now) const {
    const bool sameStart = !at.start.isEmpty() && at.start == now.start;
    const qint64 passed = sameStart ? now.running - at.running : now.calendar - at.calendar;
    return static_cast<int>(std::clamp<qint64>(left - std::max<qint64>(passed, 0), 0, left));
}

PrintLock::PrintLock(AppContext &ctx, QObject *parent) : QObject(parent), m_ctx(ctx) {
    m_timer.setInterval(1000);
    connect(&m_timer, &QTimer::timeout, this, &PrintLock::tick);
    if (const auto pause = PrintPause::fromText(m_ctx.settings.read<Setting::PrintPause>())) {
        run(pause->leftAt(PauseClock::now()), pause->total);
    }
    LoadPrintTimer();
}

int PrintLock::secondsLeft() const {
    return m_left == 0 ? 0 : static_cast<int>(std::max<qint64>(0, m_left - m_clock.elapsed() / 1000));
}

void PrintLock::LoadPrintTimer() {
    MainFields &fields = m_ctx.fields;
    fields.txtPrintTimer = m_ctx.settings.read<Setting::PrintLock>();
    fields.txtCountDown = m_ctx.settings.read<Setting::PrintLockMinutes>();
    const bool fits = fields.txtCountDown > 0 && fields.txtCountDown <= std::numeric_limits<std::int16_t>::max();
    PrintTimerMinutes = fits ? static_cast<std::int16_t>(fields.txtCountDown) : std::int16_t(0);
    const int longest = fields.txtPrintTimer ? PrintTimerMinutes * 60 : 0;
    if (const int left = secondsLeft(); left > longest) {
        run(longest, std::min(m_total, longest));
        keep();
    }
}

void PrintLock::begin() {
    LoadPrintTimer();
    if (m_ctx.fields.txtPrintTimer && PrintTimerMinutes > 0) {
        run(PrintTimerMinutes * 60, PrintTimerMinutes * 60);
        keep();
    }
}

void PrintLock::run(int left, int total) {
    m_left = left;
    m_total = total;
    m_clock.start();
    left > 0 ? m_timer.start() : m_timer.stop();
    Q_EMIT changed();
}

void PrintLock::tick() {
    const int left = secondsLeft();
    if (left == 0) {
        m_left = 0;
        m_timer.stop();
    }
    if (left % secondsBetweenKeeping == 0) {
        keep();
    }
    Q_EMIT changed();
}

void PrintLock::keep() {
    const int left = secondsLeft();
    const QString text = left == 0 ? QString() : PrintPause{left, m_total, PauseClock::now()}.text();
    m_ctx.settings.write<Setting::PrintPause, Writer::PrintLock>(text);
}

} // namespace lumora
