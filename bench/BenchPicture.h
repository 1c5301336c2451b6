// What every row of the benchmark shares: pictures of 1, 24 and 96 megapixels and the time of a plain copy of each.
#pragma once

#include <QImage>
#include <benchmark/benchmark.h>
#include <functional>

namespace lumora {

/// A picture with the look of a photo (gradients, edges, noise), made once for each size.
const QImage &benchPicture(int megapixels);

/// Seconds that one thread takes to copy a picture of that size between two warm buffers (memcpy): the best of ten new
/// rounds and of all before.
double copySeconds(int megapixels);

/// Adds the rows name/1, name/24 and name/96. `work` gets the picture and does the operation once. Counters, all of
/// the quickest round: x_copy, time as a multiple of the copy; ns_px, nanoseconds a source pixel; best_ms.
void addRows(const char *name, std::function<void(const QImage &picture)> work);

} // namespace lumora
