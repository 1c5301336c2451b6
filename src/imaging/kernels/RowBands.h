// Spreads the rows of a kernel over the processors. The kernels themselves do not use threads.
#pragma once

#include "base/TaskControl.h"
#include "imaging/Region.h"
#include "imaging/kernels/Workers.h"

#include <algorithm>
#include <cstdint>
#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>

namespace lumora {

/// Calls work(first, end) for bands of rows that cover rows 0 to `rows` - 1, on several threads when there is enough
/// to do, and returns when all are done. `pixelsPerRow` says how much one row costs. What a row gets must not depend
/// on how the rows are cut into bands. Once the current TaskControl is cancelled the bands that are left are not done.
template <typename Work> void forRowBands(int rows, std::int64_t pixelsPerRow, const Work &work) {
    constexpr std::int64_t pixelsPerBand = 1 << 16;
    const auto grain = std::max<std::int64_t>(1, pixelsPerBand / std::max<std::int64_t>(1, pixelsPerRow));
    if (rows <= grain) {
        work(0, rows);
        return;
    }
    const TaskControl *const control = TaskControl::current(); // each thread has its own
    prepareWorkers();
    tbb::parallel_for(tbb::blocked_range<int>(0, rows, static_cast<std::size_t>(grain)),
                      [&](const tbb::blocked_range<int> &band) {
                          if (control == nullptr || !control->isCancelled()) {
                              work(band.begin(), band.end());
                          }
                      });
}

/// The same for the rows of an area; work gets the part of the area that is its band.
template <typename Work> void forBands(PixelRect area, const Work &work) {
    forRowBands(area.height(), area.width(), [&](int first, int end) {
        work(PixelRect{area.left, area.top + first, area.right, area.top + end});
    });
}

} // namespace lumora
