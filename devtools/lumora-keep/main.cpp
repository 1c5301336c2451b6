// lumora-keep: writes a file as Lumora does, for scripts that take the disk, the system or the program's life away
// meanwhile (tests/faults). Says "kept" and how many microseconds that took, or why not. Looks for files named "begins"
// and "ends", so that a trace of its system calls shows which ones write.
#include "base/IniFiles.h"
#include "imaging/PictureFile.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QStringList>
#include <csignal>
#include <cstdio>
#include <ctime>
#include <functional>
#include <unistd.h>

using namespace lumora;

namespace {

const char usage[] = "usage: lumora-keep [--kill MICROSECONDS] photo PICTURE FILE\n"
                     "       lumora-keep [--kill MICROSECONDS] setting FILE SECTION KEY VALUE\n"
                     "--kill ends the program as kill -9 does, so long after it has begun to write.\n";

/// Ends this process after that time.
void killAfter(long microseconds) {
    sigevent event{};
    event.sigev_notify = SIGEV_SIGNAL;
    event.sigev_signo = SIGKILL;
    timer_t timer{};
    const itimerspec when{{}, {microseconds / 1'000'000, microseconds % 1'000'000 * 1000 + 1}};
    if (::timer_create(CLOCK_MONOTONIC, &event, &timer) == 0) {
        ::timer_settime(timer, 0, &when, nullptr);
    }
}

/// Why it was not kept; empty when it was.
using Work = std::function<QString()>;

Work photoWork(const QString &from, const QString &to) {
    return [picture = readPicture(from), to] {
        const PictureWritten written = writePicture(picture.picture, to, picture.metadata);
        return written.ok() ? QString() : "not written " + written.reason;
    };
}

Work settingWork(const QStringList &words) {
    return [words] {
        IniFiles files;
        files.WriteIniValue(words[0], words[1], words[2], words[3]);
        IniFiles again;
        return again.ReadIniValue(words[0], words[1], words[2], {}) == words[3] ? QString() : "not written";
    };
}

Work workOf(const QStringList &words) {
    const QString what = words.value(0);
    if (what == "photo" && words.size() == 3) {
        return photoWork(words[1], words[2]);
    }
    if (what == "setting" && words.size() == 5) {
        return settingWork(words.mid(1));
    }
    return {};
}

} // namespace

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    QStringList words = QCoreApplication::arguments().mid(1);
    long kill = -1;
    if (words.value(0) == "--kill") {
        kill = words.value(1).toLong();
        words = words.mid(2);
    }
    const Work work = workOf(words);
    if (!work) {
        std::fputs(usage, stderr);
        return 2;
    }
    if (kill >= 0) {
        killAfter(kill);
    }
    static_cast<void>(::access("begins", F_OK));
    QElapsedTimer clock;
    clock.start();
    const QString problem = work();
    const qint64 microseconds = clock.nsecsElapsed() / 1000;
    static_cast<void>(::access("ends", F_OK));
    std::printf("%s\n", problem.isEmpty() ? QByteArray("kept " + QByteArray::number(microseconds)).constData()
                                          : ("not kept: " + problem).toUtf8().constData());
    return problem.isEmpty() ? 0 : 1;
}
