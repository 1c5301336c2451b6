#include "devices/ScanProtocol.h"

#include <QList>
#include <QtEndian>
#include <algorithm>
#include <array>

namespace lumora {

namespace {

struct StatusRow {
    ScanStatus status;
    const char *word;
};
constexpr StatusRow statusRows[] = {
    {ScanStatus::Good, "good"},
    {ScanStatus::Unsupported, "unsupported"},
    {ScanStatus::Cancelled, "cancelled"},
    {ScanStatus::Busy, "busy"},
    {ScanStatus::Jammed, "jammed"},
    {ScanStatus::NoPaper, "no-paper"},
    {ScanStatus::CoverOpen, "cover-open"},
    {ScanStatus::NotAnswering, "not-answering"},
    {ScanStatus::NoMemory, "no-memory"},
    {ScanStatus::NotAllowed, "not-allowed"},
    {ScanStatus::Crashed, "crashed"},
    {ScanStatus::TooLarge, "too-large"},
};

constexpr std::array<const char *, 5> sampleWords = {"grey", "colour", "red", "green", "blue"};
constexpr int headLength = 5; // bytes

} // namespace

const char *wordOf(ScanStatus status) {
    return statusRows[static_cast<std::size_t>(status)].word;
}

std::optional<ScanStatus> statusOf(const QByteArray &word) {
    for (const StatusRow &row : statusRows) {
        if (word == row.word) {
            return row.status;
        }
    }
    return std::nullopt;
}

QByteArray ScanFrame::toText() const {
    QByteArray text(sampleWords.at(static_cast<std::size_t>(samples)));
    for (const int number : {last ? 1 : 0, depth, width, lines, bytesPerLine}) {
        text += ' ' + QByteArray::number(number);
    }
    return text;
}

std::optional<ScanFrame> ScanFrame::fromText(const QByteArray &text) {
    const QList<QByteArray> words = text.split(' ');
    const auto word = std::find(sampleWords.begin(), sampleWords.end(), words.first());
    if (words.size() != 6 || word == sampleWords.end()) {
        return std::nullopt;
    }
    std::array<int, 5> numbers{};
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        bool isNumber = false;
        numbers.at(i) = words.at(static_cast<qsizetype>(i) + 1).toInt(&isNumber);
        if (!isNumber) {
            return std::nullopt;
        }
    }
    const auto samples = static_cast<Samples>(word - sampleWords.begin());
    return ScanFrame{samples, numbers[0] != 0, numbers[1], numbers[2], numbers[3], numbers[4]};
}

QByteArray scanMessageHead(ScanMessage::Kind kind, int length) {
    QByteArray head(headLength, static_cast<char>(kind));
    qToLittleEndian(length, head.data() + 1);
    return head;
}

std::optional<ScanMessage> ScanMessages::next() {
    const auto waiting = m_bytes.size() - m_used;
    if (m_broken || waiting < headLength) {
        return std::nullopt;
    }
    const char *head = m_bytes.constData() + m_used;
    const auto length = qFromLittleEndian<qint32>(head + 1);
    if (QByteArrayView("fdos").indexOf(*head) < 0 || length < 0 || length > longestScanMessage) {
        m_broken = true;
        return std::nullopt;
    }
    if (waiting < headLength + length) {
        m_bytes.remove(0, m_used); // what is left is less than a message
        m_used = 0;
        return std::nullopt;
    }
    ScanMessage message{static_cast<ScanMessage::Kind>(*head), m_bytes.mid(m_used + headLength, length)};
    m_used += headLength + length;
    return message;
}

} // namespace lumora
