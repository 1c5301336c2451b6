// lumora-keep: writes a file as Lumora does, for scripts that take the disk, the system or the program's life away
// meanwhile (tests/faults). Says "kept" and how many microseconds that took, or why not. Looks for files named "begins"
// and "ends", so that a trace of its system calls shows which ones write.
#include "Pictures.h"
#include "Unsaved.h"
#include "base/IniFiles.h"
#include "imaging/PictureFile.h"

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QStringList>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <memory>
#include <sys/prctl.h>
#include <unistd.h>

using namespace lumora;
using keep::Work;

namespace {

const char usage[] =
    "usage: lumora-keep [--kill MICROSECONDS | --hold] WORK\n"
    "WORK: photo PICTURE FILE\n"
    "      setting FILE SECTION KEY VALUE\n"
    "      recovery FILE PICTURE FOLDER\n"
    "      recovered FOLDER\n"
    "      discard FILE FOLDER\n"
    "      history FILE FOLDER\n"
    "      pictures FOLDER\n"
    "--kill ends the program as kill -9 does, so long after it has begun to write; --hold stops it (SIGSTOP)\n"
    "before that. It ends without putting anything in order.\n";

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
    if (what == "recovery" && words.size() == 4) {
        return keep::recoveryWork(words[1], words[2], words[3]);
    }
    if (what == "recovered" && words.size() == 2) {
        return keep::recoveredWork(words[1]);
    }
    if (what == "discard" && words.size() == 3) {
        return keep::discardWork(words[1], words[2]);
    }
    if (what == "history" && words.size() == 3) {
        return keep::historyWork(words[1], words[2]);
    }
    if (what == "pictures" && words.size() == 2) {
        return keep::picturesWork(words[1]);
    }
    return {};
}

} // namespace

int main(int argc, char **argv) {
    qputenv("QT_QPA_PLATFORM", "minimal"); // no window will be shown
    QStringList words;
    for (int n = 1; n < argc; ++n) {
        words << QString::fromLocal8Bit(argv[n]);
    }
    // Recovery asks for a session; photos and settings need less, and less memory.
    const bool isUnsaved = words.contains("recovery") || words.contains("discard");
    const std::unique_ptr<QCoreApplication> application(isUnsaved ? new QGuiApplication(argc, argv)
                                                                  : new QCoreApplication(argc, argv));
    long kill = -1;
    if (words.value(0) == "--kill") {
        kill = words.value(1).toLong();
        words = words.mid(2);
    }
    const bool holds = words.value(0) == "--hold";
    const Work work = workOf(words.mid(holds ? 1 : 0));
    if (!work) {
        std::fputs(usage, stderr);
        return 2;
    }
    if (kill >= 0) {
        killAfter(kill);
    }
    if (holds) {
        ::prctl(PR_SET_PTRACER, PR_SET_PTRACER_ANY); // strace comes from beside it
        std::raise(SIGSTOP);
    }
    static_cast<void>(::access("begins", F_OK));
    QElapsedTimer clock;
    clock.start();
    const QString problem = work();
    const qint64 microseconds = clock.nsecsElapsed() / 1000;
    static_cast<void>(::access("ends", F_OK));
    std::printf("%s\n", problem.isEmpty() ? QByteArray("kept " + QByteArray::number(microseconds)).constData()
                                          : ("not kept: " + problem).toUtf8().constData());
    std::fflush(stdout);
    std::_Exit(problem.isEmpty() ? 0 : 1);
}
