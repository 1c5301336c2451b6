#include "imaging/files/Lzw.h"

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

namespace lumora {

namespace {

constexpr int mostBits = 12;
constexpr int mostCodes = 1 << mostBits;

/// The table of strings: what a code and the index after it are coded as. Emptied by counting up a generation.
class Strings {
  public:
    void clear() {
        m_generation = (m_generation + 1) % (1 << generationBits);
        if (m_generation == 0) {
            m_keys.fill(0);
            m_generation = 1;
        }
    }
    /// The place of the string, or the free one where it belongs.
    std::size_t find(std::uint32_t code, std::uint8_t index) const {
        const std::uint32_t wanted = key(code, index);
        std::size_t at = (wanted * std::uint32_t{2654435761}) >> (32 - placeBits); // D. Knuth's multiplicative hashing
        while (m_keys[at] != wanted && m_keys[at] >> (32 - generationBits) == m_generation) {
            at = (at + 1) % places;
        }
        return at;
    }
    bool isFree(std::size_t at) const { return m_keys[at] >> (32 - generationBits) != m_generation; }
    std::uint16_t code(std::size_t at) const { return m_codes[at]; }
    void set(std::size_t at, std::uint32_t code, std::uint8_t index, int itsCode) {
        m_keys[at] = key(code, index);
        m_codes[at] = static_cast<std::uint16_t>(itsCode);
    }

  private:
    static constexpr int placeBits = 14;
    static constexpr std::size_t places = std::size_t{1} << placeBits;
    static constexpr int generationBits = 12;

    std::uint32_t key(std::uint32_t code, std::uint8_t index) const {
        return m_generation << (32 - generationBits) | code << 8 | index;
    }

    std::uint32_t m_generation = 0; // 0 is what no string has
    std::array<std::uint32_t, places> m_keys{};
    std::array<std::uint16_t, places> m_codes{};
};

class Coder {
  public:
    Coder(int indexBits, std::size_t indices) : m_clear(1 << indexBits), m_indexBits(indexBits) {
        m_part.bytes.resize(indices / 2 + 8);
        restart();
    }

    void emit(int code) {
        m_bits |= static_cast<std::uint64_t>(code) << m_bitCount;
        m_bitCount += m_width;
        m_part.bits += static_cast<std::size_t>(m_width);
        if (m_bitCount >= 32) {
            for (int byte = 0; byte < 4; ++byte) {
                m_part.bytes[m_count + static_cast<std::size_t>(byte)] =
                    static_cast<std::uint8_t>(m_bits >> (8 * byte));
            }
            m_count += 4;
            m_bits >>= 32;
            m_bitCount -= 32;
            if (m_count + 4 > m_part.bytes.size()) {
                m_part.bytes.resize(2 * m_part.bytes.size());
            }
        }
        // The reader learns a string with each code but the first, and reads wider codes as soon as it needs them.
        m_learned += m_first ? 0 : 1;
        m_first = false;
        if (m_learned == 1 << m_width && m_width < mostBits) {
            ++m_width;
        }
    }
    void emitClear() {
        emit(m_clear);
        restart();
    }
    void emitEnd() { emit(m_clear + 1); }

    LzwPart finished() {
        m_part.bytes.resize(m_count);
        for (; m_bitCount > 0; m_bitCount -= 8, m_bits >>= 8) {
            m_part.bytes.push_back(static_cast<std::uint8_t>(m_bits));
        }
        return std::move(m_part);
    }

  private:
    void restart() {
        m_first = true;
        m_learned = m_clear + 2;
        m_width = m_indexBits + 1;
    }

    const int m_clear;
    const int m_indexBits;
    LzwPart m_part;
    std::size_t m_count = 0; ///< of its bytes that are written
    std::uint64_t m_bits = 0;
    int m_bitCount = 0;
    bool m_first = true;
    int m_learned = 0; ///< the next free code of the reader
    int m_width = 0;
};

} // namespace

LzwPart lzwPart(std::span<const std::uint8_t> indices, int indexBits, bool last) {
    Coder coder(indexBits, indices.size());
    const auto strings = std::make_unique<Strings>();
    strings->clear();
    const int firstFree = (1 << indexBits) + 2;
    int next = firstFree;
    int code = indices.empty() ? -1 : indices.front();
    for (std::size_t i = 1; i < indices.size(); ++i) {
        const std::uint8_t index = indices[i];
        const std::size_t at = strings->find(static_cast<std::uint32_t>(code), index);
        if (!strings->isFree(at)) {
            code = strings->code(at);
            continue;
        }
        coder.emit(code);
        if (next < mostCodes) {
            strings->set(at, static_cast<std::uint32_t>(code), index, next++);
        } else {
            coder.emitClear();
            strings->clear();
            next = firstFree;
        }
        code = index;
    }
    if (code >= 0) {
        coder.emit(code);
    }
    last ? coder.emitEnd() : coder.emitClear();
    return coder.finished();
}

LzwBlocks::LzwBlocks(int indexBits) {
    addBits(std::uint32_t{1} << indexBits, indexBits + 1);
}

void LzwBlocks::addBits(std::uint32_t value, int count) {
    m_bits |= static_cast<std::uint64_t>(value) << m_bitCount;
    m_bitCount += count;
    while (m_bitCount >= 8) {
        m_bytes.push_back(static_cast<std::uint8_t>(m_bits));
        m_bits >>= 8;
        m_bitCount -= 8;
    }
}

std::vector<std::uint8_t> LzwBlocks::add(const LzwPart &part) {
    const std::size_t whole = part.bits / 8;
    const std::size_t before = m_bytes.size();
    m_bytes.resize(before + whole);
    // Less than eight bits wait; they are the lower ones of each byte that follows.
    std::uint32_t waiting = static_cast<std::uint32_t>(m_bits);
    for (std::size_t i = 0; i < whole; ++i) {
        waiting |= static_cast<std::uint32_t>(part.bytes[i]) << m_bitCount;
        m_bytes[before + i] = static_cast<std::uint8_t>(waiting);
        waiting >>= 8;
    }
    m_bits = waiting;
    if (part.bits % 8 != 0) {
        addBits(part.bytes[whole], static_cast<int>(part.bits % 8));
    }
    return blocks(false);
}

std::vector<std::uint8_t> LzwBlocks::finish() {
    if (m_bitCount > 0) {
        addBits(0, 8 - m_bitCount);
    }
    std::vector<std::uint8_t> result = blocks(true);
    result.push_back(0);
    return result;
}

std::vector<std::uint8_t> LzwBlocks::blocks(bool all) {
    constexpr std::size_t block = 255;
    const std::size_t count = all ? (m_bytes.size() + block - 1) / block : m_bytes.size() / block;
    std::vector<std::uint8_t> result(std::min(m_bytes.size(), count * block) + count);
    std::size_t at = 0;
    for (std::uint8_t *to = result.data(); at < std::min(m_bytes.size(), count * block);) {
        const std::size_t bytes = std::min(block, m_bytes.size() - at);
        *to++ = static_cast<std::uint8_t>(bytes);
        to = std::copy_n(m_bytes.data() + at, bytes, to);
        at += bytes;
    }
    m_bytes.erase(m_bytes.begin(), m_bytes.begin() + static_cast<std::ptrdiff_t>(at));
    return result;
}

} // namespace lumora
