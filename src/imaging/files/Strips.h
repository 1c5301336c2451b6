// Compressing a picture's rows on all cores while the strips are written in order. Used by the JPEG, PNG and TIFF
// writers.
#pragma once

#include "base/TaskControl.h"
#include "imaging/kernels/Workers.h"

#include <QByteArray>
#include <algorithm>
#include <tbb/parallel_pipeline.h>
#include <vector>

namespace lumora {

/// Rows in a strip of about a megabyte, enough for a good compression ratio.
inline int rowsInStrip(int width, int height, int channels) {
    constexpr int stripBytes = 1 << 20;
    return std::clamp(stripBytes / std::max(1, width * channels), 1, height);
}

/// Calls `pack(firstRow, endRow)` for the strips of `height` rows, on all cores at once, and `write(result)` for the
/// results in their order, one at a time. Ends early when `write` returns false or the current TaskControl is
/// cancelled; tells it how many rows are written.
template <typename Result, typename Pack, typename Write>
void packStrips(int height, int stripRows, Pack pack, Write write) {
    constexpr int stripsAtOnce = 8;
    TaskControl *const control = TaskControl::current();
    int nextRow = 0;
    int writtenRows = 0;
    bool good = true;
    const auto nextStrip = [&](tbb::flow_control &flow) {
        const int row = nextRow;
        if (row >= height || !good || (control != nullptr && control->isCancelled())) {
            flow.stop();
        }
        nextRow = std::min(row + stripRows, height);
        return row;
    };
    const auto packStrip = [&](int row) { return pack(row, std::min(row + stripRows, height)); };
    const auto writeStrip = [&](const Result &result) {
        good = good && write(result);
        writtenRows = std::min(writtenRows + stripRows, height);
        if (control != nullptr) {
            control->setProgress(writtenRows, height);
        }
    };
    prepareWorkers();
    tbb::parallel_pipeline(stripsAtOnce,
                           tbb::make_filter<void, int>(tbb::filter_mode::serial_in_order, nextStrip) &
                               tbb::make_filter<int, Result>(tbb::filter_mode::parallel, packStrip) &
                               tbb::make_filter<Result, void>(tbb::filter_mode::serial_in_order, writeStrip));
}

} // namespace lumora
