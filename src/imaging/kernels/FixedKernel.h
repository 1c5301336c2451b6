// What Convolution.cpp hands to its kernels.
#pragma once

#include <array>
#include <cstdint>

namespace lumora {

constexpr int mostStep = 2;

struct FixedKernel {
    std::array<std::int16_t, 10> weights; ///< the last is 0: weights are taken in pairs
    int bits;                             ///< after the point
    int start;                            ///< the offset and half a level, with those bits
    int startPerAlpha;                    ///< the offset / 255
    int step;                             ///< pixels from one place to the next; at most mostStep
};

} // namespace lumora
