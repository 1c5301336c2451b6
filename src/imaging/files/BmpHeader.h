// The many headers of BMP files, brought to one form.
#pragma once

#include "imaging/files/Source.h"

#include <array>
#include <cstdint>
#include <vector>

namespace lumora {

struct BmpHeader {
    enum Compression { Plain = 0, RunLength8 = 1, RunLength4 = 2, BitFields = 3 };

    bool known = false; ///< everything below is filled and can be decoded
    int width = 0;
    int height = 0;
    bool fromTop = false;
    int bits = 0; ///< 1, 2, 4, 8, 16, 24 or 32
    int compression = Plain;
    qint64 pixelsAt = 0;
    std::array<std::uint32_t, 4> masks{}; ///< red, green, blue, alpha, for 16 and 32 bits
    std::vector<std::uint32_t> palette;   ///< 0xFFRRGGBB
    QByteArray profile;

    /// Bytes of a stored row, a multiple of four.
    qint64 rowBytes() const { return (static_cast<qint64>(width) * bits + 31) / 32 * 4; }
};

BmpHeader readBmpFields(Source &source);

} // namespace lumora
