// Where the columns of a picture in perspective come from; what Perspective.cpp hands to its kernel.
#pragma once

#include <cstdint>
#include <vector>

namespace lumora {

/// One entry for each column of the result. All rows of a column come from the same source column and the next.
struct PerspectiveColumns {
    std::vector<std::int32_t> left;   ///< the source column, -2 where the column shows background only
    std::vector<std::int32_t> weight; ///< of the source column right of it, of 256
    /// Half the source rows to one row of the result, a multiple of 2^-21: with that, every number that the kernel
    /// computes is exact in 53 bits, and no processor rounds otherwise than another.
    std::vector<double> halfStep;
};

} // namespace lumora
