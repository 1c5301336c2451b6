#include "output/scan/ScanReader.h"

#include "base/TaskControl.h"
#include "imaging/Scale.h"
#include "output/scan/ScanPicture.h"

#include <QEventLoop>
#include <QTimer>
#include <algorithm>

namespace lumora {

namespace {

constexpr int tick = 50; // milliseconds between two looks at what has come

/// Hands on what has come since the last time, reduced.
class Growth {
  public:
    Growth(const ScanPicture &picture, const std::function<void(const ScanStrip &)> &grown)
        : m_picture(picture), m_grown(grown) {}

    void passBegins() { m_shown = 0; }

    /// Whole rows of the reduced picture; at the end also what is left over.
    void show(bool atEnd) {
        const QSize whole = m_picture.wholeSize();
        const int factor = std::max({1, whole.width() / scanOnScreen, whole.height() / scanOnScreen});
        const int lines = m_picture.lines() - m_shown;
        const int rows = lines / factor;
        if (rows == 0 && !(atEnd && lines > 0)) {
            return;
        }
        const int used = rows == 0 ? lines : rows * factor;
        const QImage strip =
            scaleByAveraging(m_picture.part(m_shown, used), std::max(1, whole.width() / factor), std::max(1, rows));
        if (!strip.isNull()) {
            m_grown({strip, m_shown / factor, whole.height() < 0 ? -1 : std::max(1, whole.height() / factor), factor});
        }
        m_shown += used;
    }

  private:
    const ScanPicture &m_picture;
    const std::function<void(const ScanStrip &)> &m_grown;
    int m_shown = 0; ///< lines
};

} // namespace

ScanResult readScan(const ScanRequest &request, const std::function<void(const ScanStrip &)> &grown) {
    ScanProcess process(request.helper);
    ScanPicture picture;
    Growth growth(picture, grown);
    ScanStatus status = ScanStatus::Good; // of what came
    QEventLoop loop;
    const auto check = [&](ScanStatus next) {
        if (next != ScanStatus::Good && status == ScanStatus::Good) {
            status = next;
            process.cancel();
        }
    };
    QObject::connect(&process, &ScanProcess::frameBegan, &loop, [&](const ScanFrame &frame) {
        growth.show(true);
        check(picture.begin(frame));
        growth.passBegins();
    });
    QObject::connect(&process, &ScanProcess::dataRead, &loop, [&](const QByteArray &bytes) {
        if (status == ScanStatus::Good) {
            check(picture.add(bytes));
        }
    });
    QTimer look;
    TaskControl *control = TaskControl::current();
    QObject::connect(&look, &QTimer::timeout, &loop, [&] {
        if (TaskControl::isCurrentCancelled()) {
            check(ScanStatus::Cancelled);
        } else if (control != nullptr && picture.share() >= 0) {
            control->setProgress(qRound64(picture.share() * 1000), 1000);
        }
        if (status == ScanStatus::Good) {
            growth.show(false);
        }
    });
    ScanStatus ended = ScanStatus::Crashed;
    QObject::connect(&process, &ScanProcess::finished, &loop, [&](ScanStatus how) {
        ended = how;
        loop.quit();
    });
    look.start(tick);
    process.scan(request.device, request.settings, request.values);
    loop.exec();

    if (status == ScanStatus::Good) {
        status = ended;
    }
    if (status == ScanStatus::Good) {
        picture.end();
        growth.show(true);
        const QImage scanned = picture.picture();
        return {scanned, scanned.isNull() ? ScanStatus::NotAnswering : ScanStatus::Good}; // not one line came
    }
    return {{}, status};
}

} // namespace lumora
