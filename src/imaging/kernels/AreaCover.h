// How much of which source pixels a pixel of a reduced picture covers.
#pragma once

#include <cstdint>

namespace lumora {

/// What one result pixel covers along one side, in parts of which a source pixel has `target` and a result pixel
/// `source`: a share of the first pixel, whole ones, a share of the last.
struct AreaCover {
    AreaCover(int index, int source, int target) : wholeWeight(static_cast<std::uint32_t>(target)) {
        const std::int64_t begin = std::int64_t(index) * source;
        const std::int64_t end = begin + source;
        first = static_cast<int>(begin / target);
        const int last = static_cast<int>((end - 1) / target);
        if (first == last) {
            firstWeight = static_cast<std::uint32_t>(source);
            return;
        }
        firstWeight = static_cast<std::uint32_t>((first + std::int64_t(1)) * target - begin);
        whole = last - first - 1;
        lastWeight = static_cast<std::uint32_t>(end - std::int64_t(last) * target);
    }

    int end() const { return first + 1 + whole + (lastWeight != 0 ? 1 : 0); }

    int first = 0;
    int whole = 0;
    std::uint32_t wholeWeight;
    std::uint32_t firstWeight = 0;
    std::uint32_t lastWeight = 0;
};

} // namespace lumora
