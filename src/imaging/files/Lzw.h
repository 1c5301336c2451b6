// LZW as GIF has it (GIF89a, appendix F), in parts that are coded on all cores: a part ends with a clear code, so that
// the next one begins with an empty table wherever its bits come to stand.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace lumora {

/// Codes, from the lowest bit on.
struct LzwPart {
    std::vector<std::uint8_t> bytes;
    std::size_t bits = 0;
};

/// Codes the indices, each below 1 << `indexBits` (2 to 8). The last part ends with the end code.
LzwPart lzwPart(std::span<const std::uint8_t> indices, int indexBits, bool last);

/// Joins parts to one stream of bits, in GIF's blocks of up to 255 bytes.
class LzwBlocks {
  public:
    /// `indexBits` as for the parts; the stream begins with a clear code.
    explicit LzwBlocks(int indexBits);

    /// Adds a part; the finished blocks, to be written.
    std::vector<std::uint8_t> add(const LzwPart &part);
    /// The blocks of the rest, and the empty one that ends the stream.
    std::vector<std::uint8_t> finish();

  private:
    void addBits(std::uint32_t value, int count);
    std::vector<std::uint8_t> blocks(bool all);

    std::vector<std::uint8_t> m_bytes; ///< that are not in a block yet
    std::uint64_t m_bits = 0;
    int m_bitCount = 0;
};

} // namespace lumora
