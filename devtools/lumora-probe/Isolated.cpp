#include "Isolated.h"

#include <QElapsedTimer>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

// Enough for 200 megapixels decoded, converted and turned. The sanitizers reserve far more than that at once.
void limitMemory() {
#ifndef __SANITIZE_ADDRESS__
    constexpr rlim_t mostBytes = rlim_t{6} << 30;
    const rlimit limit{mostBytes, mostBytes};
    setrlimit(RLIMIT_AS, &limit);
#endif
    const rlimit noCore{0, 0};
    setrlimit(RLIMIT_CORE, &noCore);
}

[[noreturn]] void runChild(const std::function<QByteArray()> &work, int pipe) {
    limitMemory();
    const QByteArray answer = work();
    qsizetype written = 0;
    while (written < answer.size()) {
        const ssize_t count =
            ::write(pipe, answer.constData() + written, static_cast<std::size_t>(answer.size() - written));
        if (count <= 0) {
            break;
        }
        written += count;
    }
    _exit(written == answer.size() ? 0 : 1); // no clean-up: it belongs to the parent
}

// Reads until the child closes its end. False when the time is over.
bool readAll(int pipe, int timeoutMs, QByteArray &answer) {
    QElapsedTimer timer;
    timer.start();
    std::array<char, 4096> buffer{};
    for (;;) {
        pollfd waiting{pipe, POLLIN, 0};
        const qint64 left = timeoutMs - timer.elapsed();
        const int ready = left > 0 ? ::poll(&waiting, 1, static_cast<int>(left)) : 0;
        if (ready < 0 && errno == EINTR) {
            continue;
        }
        if (ready <= 0) {
            return false;
        }
        const ssize_t count = ::read(pipe, buffer.data(), buffer.size());
        if (count <= 0) {
            return true;
        }
        answer.append(buffer.data(), count);
    }
}

} // namespace

IsolatedAnswer runIsolated(const std::function<QByteArray()> &work, int timeoutMs) {
    IsolatedAnswer result;
    int ends[2];
    if (::pipe(ends) != 0) {
        result.failure = QStringLiteral("no pipe: %1").arg(QString::fromLocal8Bit(std::strerror(errno)));
        return result;
    }
    const pid_t child = ::fork();
    if (child == 0) {
        ::close(ends[0]);
        runChild(work, ends[1]);
    }
    ::close(ends[1]);
    if (child < 0) {
        result.failure = QStringLiteral("no process: %1").arg(QString::fromLocal8Bit(std::strerror(errno)));
        ::close(ends[0]);
        return result;
    }
    const bool inTime = readAll(ends[0], timeoutMs, result.answer);
    ::close(ends[0]);
    if (!inTime) {
        ::kill(child, SIGKILL);
    }
    int status = 0;
    while (::waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
    if (!inTime) {
        result.failure = QStringLiteral("no answer within %1 s").arg(timeoutMs / 1000.0);
    } else if (WIFSIGNALED(status)) {
        result.failure = QStringLiteral("crashed: %1").arg(QLatin1String(strsignal(WTERMSIG(status))));
    } else if (WEXITSTATUS(status) != 0) {
        result.failure = QStringLiteral("ended with code %1").arg(WEXITSTATUS(status));
    }
    return result;
}
