#include "app/ClosingSignals.h"

#include "session/DoEvents.h"

#include <QApplication>
#include <QDialog>
#include <QSocketNotifier>
#include <QTimer>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <fcntl.h>
#include <unistd.h>
#include <utility>

namespace lumora {

namespace {

constexpr std::array closingSignals{SIGTERM, SIGINT, SIGHUP};
constexpr std::chrono::milliseconds patience(15); // between two looks whether the work is done
std::array<int, 2> pipeEnds{-1, -1};              // read, write: async-signal-safe calls on a file descriptor
pid_t ownProcess = -1;

void tellThePipe(int number) {
    if (::getpid() != ownProcess) {
        // A helper program that is ended while it starts still has this handler, and the pipe: Lumora would end.
        ::signal(number, SIG_DFL);
        ::kill(::getpid(), number);
        return;
    }
    const int before = errno;
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = ::write(pipeEnds[1], &byte, 1); // a full pipe wakes the reader
    errno = before;
}

} // namespace

ClosingSignals::ClosingSignals(QObject *parent) : QObject(parent) {
    qApp->installEventFilter(this);
    if (::pipe2(pipeEnds.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
        return; // then a signal ends the program by default
    }
    ownProcess = ::getpid();
    auto *notifier = new QSocketNotifier(pipeEnds[0], QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [this, notifier] {
        notifier->setEnabled(false);
        end();
    });
    for (const int number : closingSignals) {
        struct sigaction action {};
        ::sigaction(number, nullptr, &action);
        if (action.sa_handler == SIG_DFL) {
            action.sa_handler = tellThePipe;
            action.sa_flags = SA_RESTART;
            ::sigaction(number, &action, nullptr);
        }
    }
}

void ClosingSignals::end() {
    // From Qt 6.8 on exit() emits aboutToQuit at once, which would miss the result of the work that is under way.
    if (isInDoEvents()) {
        QTimer::singleShot(patience, this, &ClosingSignals::end);
        return;
    }
    // A dialog of the desktop may run an event loop that knows nothing of exit(): it ends with the dialog.
    for (QWidget *window : QApplication::topLevelWidgets()) {
        auto *dialog = qobject_cast<QDialog *>(window);
        if (dialog != nullptr && dialog->isVisible() && dialog->testAttribute(Qt::WA_DontShowOnScreen)) {
            dialog->reject();
        }
    }
    QCoreApplication::exit(0);
}

ClosingSignals::~ClosingSignals() {
    for (const int number : closingSignals) {
        struct sigaction action {};
        ::sigaction(number, nullptr, &action);
        if (action.sa_handler == tellThePipe) {
            action.sa_handler = SIG_DFL;
            ::sigaction(number, &action, nullptr);
        }
    }
    for (int &end : pipeEnds) {
        if (end >= 0) {
            ::close(std::exchange(end, -1));
        }
    }
}

/// The session's end, or this program's own. Qt would close the windows first, of which one may ask the user, or not be
/// allowed to close, and so hold up the session.
bool ClosingSignals::eventFilter(QObject *watched, QEvent *event) {
    if (watched == qApp && event->type() == QEvent::Quit) {
        end();
        return true;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace lumora
