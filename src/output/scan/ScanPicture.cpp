#include "output/scan/ScanPicture.h"

#include "imaging/Picture.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace lumora {

namespace {

constexpr int firstRoom = 256;                // lines, where the height is not known
constexpr int widestLine = 8 * 65'535 + 4096; // bytes: three samples of 16 bits, and what drivers add

bool isOnePass(const ScanFrame &frame) {
    return frame.samples == ScanFrame::Samples::Grey || frame.samples == ScanFrame::Samples::Colour;
}

/// Bytes that the line's pixels take.
int bytesNeeded(const ScanFrame &frame) {
    const int bytes = (frame.width * frame.depth + 7) / 8;
    return frame.samples == ScanFrame::Samples::Colour ? 3 * bytes : bytes;
}

/// The sample `index` of a line as 0 to 255, of `channels` that alternate. Samples of 16 bits are in the byte order of
/// the machine; of 1 bit, eight of one channel are in a byte, the first in the highest bit.
uchar sampleAt(const uchar *line, int depth, int index, int channels, int channel) {
    switch (depth) {
    case 1:
        return (line[index / 8 * channels + channel] >> (7 - index % 8) & 1) != 0 ? 255 : 0;
    case 8:
        return line[index * channels + channel];
    default: {
        quint16 sample = 0;
        std::memcpy(&sample, line + 2 * (index * channels + channel), sizeof sample);
        return static_cast<uchar>((sample * 255 + 32'767) / 65'535);
    }
    }
}

} // namespace

ScanStatus ScanPicture::begin(const ScanFrame &frame) {
    const bool again = m_passes > 0;
    const bool possible = (frame.depth == 1 || frame.depth == 8 || frame.depth == 16) && frame.width > 0 &&
                          frame.lines >= -1 && frame.lines != 0 &&
                          (!again || (frame.width == m_frame.width && !isOnePass(frame) && !isOnePass(m_frame)));
    if (m_status != ScanStatus::Good) {
        return m_status;
    }
    if (!possible) {
        return m_status = ScanStatus::Crashed;
    }
    if (frame.width > longestSide || frame.lines > longestSide ||
        qint64{frame.width} * std::max(frame.lines, 1) > maxPicturePixels) {
        return m_status = ScanStatus::TooLarge;
    }
    if (frame.bytesPerLine < bytesNeeded(frame) || frame.bytesPerLine > widestLine) {
        return m_status = ScanStatus::Crashed;
    }
    end();
    m_frame = frame;
    ++m_passes;
    m_line = 0;
    return again ? ScanStatus::Good : m_status = makeRoom(frame.lines > 0 ? frame.lines : firstRoom);
}

ScanStatus ScanPicture::makeRoom(int lines) {
    const qint64 most = std::min<qint64>(longestSide, maxPicturePixels / m_frame.width);
    if (m_picture.height() >= most) {
        return ScanStatus::TooLarge;
    }
    QImage larger = newPicture(m_frame.width, static_cast<int>(std::min<qint64>(lines, most)));
    if (larger.isNull()) {
        return ScanStatus::NoMemory;
    }
    if (m_line > 0) {
        std::memcpy(larger.bits(), m_picture.constBits(), static_cast<size_t>(m_picture.bytesPerLine()) * m_line);
    }
    m_picture = larger;
    return ScanStatus::Good;
}

ScanStatus ScanPicture::add(const QByteArray &bytes) {
    if (m_passes == 0 && m_status == ScanStatus::Good) {
        m_status = ScanStatus::Crashed;
    }
    qsizetype used = 0;
    while (m_status == ScanStatus::Good && used < bytes.size()) {
        const qsizetype part = std::min(m_frame.bytesPerLine - m_rest.size(), bytes.size() - used);
        m_rest.append(bytes.constData() + used, part);
        used += part;
        if (m_rest.size() == m_frame.bytesPerLine) {
            takeLine();
        }
    }
    return m_status;
}

void ScanPicture::end() {
    if (m_rest.isEmpty() || m_status != ScanStatus::Good) {
        return;
    }
    const bool bitsAreInk = m_frame.depth == 1 && m_frame.samples == ScanFrame::Samples::Grey;
    m_rest.append(m_frame.bytesPerLine - m_rest.size(), bitsAreInk ? '\x00' : '\xff');
    takeLine();
}

/// Converts the line in m_rest.
void ScanPicture::takeLine() {
    const bool firstPass = m_passes == 1;
    if (firstPass && m_frame.lines < 0 && m_line == m_picture.height()) {
        m_status = makeRoom(2 * m_line);
    }
    const int lines = firstPass ? m_picture.height() : m_height;
    if (m_status == ScanStatus::Good && m_line < lines) {
        const auto *line = reinterpret_cast<const uchar *>(m_rest.constData());
        auto *pixels = reinterpret_cast<QRgb *>(m_picture.scanLine(m_line));
        const int width = m_frame.width;
        const int depth = m_frame.depth;
        if (m_frame.samples == ScanFrame::Samples::Colour) {
            for (int x = 0; x < width; ++x) {
                pixels[x] = qRgb(sampleAt(line, depth, x, 3, 0), sampleAt(line, depth, x, 3, 1),
                                 sampleAt(line, depth, x, 3, 2));
            }
        } else if (m_frame.samples == ScanFrame::Samples::Grey) {
            const uchar ink = depth == 1 ? 255 : 0; // a set bit is black, in grey alone
            for (int x = 0; x < width; ++x) {
                const int grey = sampleAt(line, depth, x, 1, 0) ^ ink;
                pixels[x] = qRgb(grey, grey, grey);
            }
        } else {
            const int shift = m_frame.samples == ScanFrame::Samples::Red     ? 16
                              : m_frame.samples == ScanFrame::Samples::Green ? 8
                                                                             : 0;
            for (int x = 0; x < width; ++x) {
                const QRgb before = firstPass ? qRgb(0, 0, 0) : pixels[x] & ~(QRgb{255} << shift);
                pixels[x] = before | QRgb{sampleAt(line, depth, x, 1, 0)} << shift;
            }
        }
        ++m_line;
        m_height = std::max(m_height, m_line);
    }
    m_rest.clear();
}

QImage ScanPicture::picture() const {
    if (m_height == 0) {
        return {};
    }
    return m_height == m_picture.height() ? m_picture : m_picture.copy(0, 0, m_frame.width, m_height);
}

QImage ScanPicture::part(int firstLine, int lines) const {
    return {m_picture.constScanLine(firstLine), m_picture.width(), lines, m_picture.bytesPerLine(), m_picture.format()};
}

double ScanPicture::share() const {
    const int lines = m_passes > 1 ? m_height : m_frame.lines;
    if (m_passes == 0 || lines <= 0) {
        return -1;
    }
    const int passes = isOnePass(m_frame) ? 1 : 3;
    return (m_passes - 1 + double(m_line) / lines) / passes;
}

} // namespace lumora
