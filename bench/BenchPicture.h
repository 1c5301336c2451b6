// What every row of the benchmark shares: pictures of 1, 24 and 96 megapixels, and rows with their counters.
#pragma once

#include <QImage>
#include <benchmark/benchmark.h>
#include <functional>

namespace lumora {

/// A picture with the look of a photo (gradients, edges, noise), made once for each size.
const QImage &benchPicture(int megapixels);

/// Adds the rows name/1, name/24 and name/96. `work` gets the picture and does the operation once. Counters, from
/// medians: x_copy, the time as a multiple of a plain copy of the picture (memcpy, one thread, between two warm
/// buffers); ns_px, nanoseconds a source pixel; median_ms. `afterwards` follows each round and does not count.
void addRows(
    const char *name, std::function<void(const QImage &picture)> work, std::function<void()> afterwards = [] {});

} // namespace lumora
