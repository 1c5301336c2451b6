// What the helper program and Lumora say to each other about scanners. The helper writes messages to its standard
// output: one byte that names the kind, four bytes of length (lowest first), then the content.
#pragma once

#include <QByteArray>
#include <QString>
#include <optional>

namespace lumora {

/// How a scan or a question to a scanner ended.
enum class ScanStatus {
    Good,
    Unsupported,  ///< the driver does not know this operation or refuses a value
    Cancelled,    ///< by Lumora, or by the scanner's own button
    Busy,         ///< another program has it
    Jammed,       ///< paper is stuck in the feeder
    NoPaper,      ///< the feeder is empty
    CoverOpen,    ///< the lid or the feeder is open
    NotAnswering, ///< not there, switched off, a broken connection, or nothing came for too long
    NoMemory,     ///< the driver has run out of memory
    NotAllowed,   ///< the user may not use the device
    Crashed,      ///< the helper program is missing, has crashed, or has talked nonsense
    TooLarge,     ///< more pixels than Lumora takes in
};

/// The word of a status in the protocol, and back; nothing for a word that is none.
const char *wordOf(ScanStatus status);
std::optional<ScanStatus> statusOf(const QByteArray &word);

/// One pass over the paper, as the scanner announces it.
struct ScanFrame {
    enum class Samples { Grey, Colour, Red, Green, Blue };
    Samples samples = Samples::Grey; ///< Red, Green and Blue: one of three passes
    bool last = true;                ///< no further pass follows
    int depth = 8;                   ///< bits of a sample: 1, 8 or 16
    int width = 0;                   ///< pixels
    int lines = -1;                  ///< -1: not known before the end
    int bytesPerLine = 0;

    QByteArray toText() const;
    /// Nothing for a text that is none. The numbers may be anything that an int holds.
    static std::optional<ScanFrame> fromText(const QByteArray &text);
};

struct ScanMessage {
    enum class Kind : char {
        Frame = 'f',   ///< a pass begins: ScanFrame as a text
        Data = 'd',    ///< bytes of the pass's lines
        Options = 'o', ///< the device's options, see ScanOption.h
        Status = 's',  ///< the end, a word
    };
    Kind kind = Kind::Status;
    QByteArray content;
};

inline constexpr int longestScanMessage = 1 << 20; ///< bytes of content

/// The head of a message that holds so many bytes.
QByteArray scanMessageHead(ScanMessage::Kind kind, int length);

/// Puts messages together from what arrives in pieces.
class ScanMessages {
  public:
    void add(const QByteArray &bytes) { m_bytes += bytes; }
    /// The next whole message, or nothing yet.
    std::optional<ScanMessage> next();
    /// What arrived cannot be messages; nothing comes from now on.
    bool isBroken() const { return m_broken; }

  private:
    QByteArray m_bytes;
    qsizetype m_used = 0; ///< bytes already given out
    bool m_broken = false;
};

} // namespace lumora
