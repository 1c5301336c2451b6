#include "devices/helper/ScanCommands.h"

#include "devices/helper/SaneDevice.h"

#include <array>
#include <cerrno>
#include <csignal>
#include <unistd.h>
#include <vector>

namespace lumora {

namespace {

// Written by the signal handler.
volatile std::sig_atomic_t cancelWanted = 0;
SANE_Handle openHandle = nullptr; // constant once the handler is installed

/// SANE allows this call at any time, also here.
void cancelScan(int) {
    if (cancelWanted != 0) {
        _exit(1); // the driver did not come back the first time
    }
    cancelWanted = 1;
    if (openHandle != nullptr) {
        sane_cancel(openHandle);
    }
}

/// The standard output. Drivers that print would spoil the messages: what they say goes where their errors go.
class Channel {
  public:
    Channel() : m_output(dup(STDOUT_FILENO)) { dup2(STDERR_FILENO, STDOUT_FILENO); }

    void send(ScanMessage::Kind kind, const char *content, int length) const {
        const QByteArray head = scanMessageHead(kind, length);
        sendBytes(head.constData(), head.size());
        sendBytes(content, length);
    }
    void send(ScanMessage::Kind kind, const QByteArray &content) const {
        send(kind, content.constData(), static_cast<int>(content.size()));
    }

  private:
    void sendBytes(const char *bytes, qsizetype length) const {
        while (length > 0) {
            const ssize_t written = write(m_output, bytes, static_cast<size_t>(length));
            if (written < 0 && errno != EINTR) {
                _exit(1); // nobody listens any more
            }
            bytes += std::max<ssize_t>(written, 0);
            length -= std::max<ssize_t>(written, 0);
        }
    }

    int m_output;
};

ScanFrame frameOf(const SANE_Parameters &parameters) {
    ScanFrame frame;
    switch (parameters.format) {
    case SANE_FRAME_RGB:
        frame.samples = ScanFrame::Samples::Colour;
        break;
    case SANE_FRAME_RED:
        frame.samples = ScanFrame::Samples::Red;
        break;
    case SANE_FRAME_GREEN:
        frame.samples = ScanFrame::Samples::Green;
        break;
    case SANE_FRAME_BLUE:
        frame.samples = ScanFrame::Samples::Blue;
        break;
    default:
        frame.samples = ScanFrame::Samples::Grey;
        break;
    }
    frame.last = parameters.last_frame == SANE_TRUE;
    frame.depth = parameters.depth;
    frame.width = parameters.pixels_per_line;
    frame.lines = parameters.lines;
    frame.bytesPerLine = parameters.bytes_per_line;
    return frame;
}

/// One pass. Good when it is whole.
SANE_Status scanFrame(SANE_Handle handle, const Channel &channel, bool &last) {
    SANE_Status status = sane_start(handle);
    SANE_Parameters parameters{};
    if (status == SANE_STATUS_GOOD) {
        status = sane_get_parameters(handle, &parameters); // exact only now
    }
    if (status != SANE_STATUS_GOOD) {
        return status;
    }
    last = parameters.last_frame == SANE_TRUE;
    channel.send(ScanMessage::Kind::Frame, frameOf(parameters).toText());
    std::array<SANE_Byte, 1 << 16> bytes{};
    while (cancelWanted == 0) {
        SANE_Int length = 0;
        status = sane_read(handle, bytes.data(), static_cast<SANE_Int>(bytes.size()), &length);
        if (status != SANE_STATUS_GOOD) {
            return status == SANE_STATUS_EOF ? SANE_STATUS_GOOD : status;
        }
        if (length > 0) {
            channel.send(ScanMessage::Kind::Data, reinterpret_cast<const char *>(bytes.data()), length);
        }
    }
    return SANE_STATUS_CANCELLED;
}

ScanStatus scanPicture(SANE_Handle handle, const Channel &channel) {
    constexpr int mostFrames = 3;
    bool last = false;
    for (int frame = 0; frame < mostFrames && !last; ++frame) {
        const SANE_Status status = cancelWanted == 0 ? scanFrame(handle, channel, last) : SANE_STATUS_CANCELLED;
        if (status != SANE_STATUS_GOOD) {
            return cancelWanted != 0 ? ScanStatus::Cancelled : statusOf(status);
        }
    }
    return ScanStatus::Good;
}

void setAll(SaneDevice &device, const QStringList &values) {
    for (const QString &each : values) {
        const qsizetype equals = each.indexOf('=');
        if (equals > 0) {
            device.set({each.left(equals), each.mid(equals + 1)});
        } else if (each == "auto") {
            // Twice: the first settings may change which values the others can have.
            for (int round = 0; round < 2; ++round) {
                for (const ScanValue &value : automaticScan(device.options())) {
                    device.set(value);
                }
            }
        }
    }
}

/// The answer is out: the scanner may take its time to close, and what goes wrong there changes nothing.
int finish(const Channel &channel, const SaneDevice &device, ScanStatus status) {
    channel.send(ScanMessage::Kind::Status, wordOf(status));
    if (device.handle() != nullptr) {
        sane_cancel(device.handle());
        sane_close(device.handle());
    }
    sane_exit();
    return 0;
}

} // namespace

int runOptions(const QString &name, const QStringList &values) {
    const Channel channel;
    SaneDevice device(name);
    if (device.status() == ScanStatus::Good) {
        setAll(device, values);
        channel.send(ScanMessage::Kind::Options, toJson(device.options()));
    }
    return finish(channel, device, device.status());
}

int runScan(const QString &name, const QStringList &values) {
    const Channel channel;
    SaneDevice device(name);
    ScanStatus status = device.status();
    if (status == ScanStatus::Good) {
        setAll(device, values);
        openHandle = device.handle();
        std::signal(SIGTERM, cancelScan);
        status = scanPicture(device.handle(), channel);
        std::signal(SIGTERM, SIG_DFL); // the end of a scanner that does not close
    }
    return finish(channel, device, status);
}

} // namespace lumora
