#include "BenchPicture.h"

#include "imaging/Picture.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstring>
#include <limits>
#include <map>
#include <random>

namespace lumora {

namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

QSize sizeOf(int megapixels) {
    // 3 : 2 like a camera's: 1200 x 800 (0.96), 6000 x 4000, 12000 x 8000.
    const int unit = megapixels == 1 ? 400 : megapixels == 24 ? 2000 : 4000;
    return {3 * unit, 2 * unit};
}

QImage makePicture(QSize size) {
    QImage picture = newPicture(size.width(), size.height());
    const PixelView pixels = writeView(picture);
    std::minstd_rand random(7);
    for (int y = 0; y < pixels.height; ++y) {
        auto *row = reinterpret_cast<QRgb *>(pixels.row(y));
        const double wave = 40 * std::sin(y * 20.0 / pixels.height);
        for (int x = 0; x < pixels.width; ++x) {
            const int noise = static_cast<int>((random() >> 8) % 13) - 6;
            const bool sky = x * 2 < pixels.width + int(wave * 10);
            const auto level = [&](double value) { return std::clamp(int(value) + noise, 0, 255); };
            row[x] = qRgb(level(sky ? 90 + 80.0 * y / pixels.height : 60 + 150.0 * x / pixels.width),
                          level(sky ? 150 : 120 + wave), level(sky ? 220 : 50 + 60.0 * x / pixels.width));
        }
    }
    return picture;
}

} // namespace

const QImage &benchPicture(int megapixels) {
    static std::map<int, QImage> pictures;
    QImage &picture = pictures[megapixels];
    if (picture.isNull()) {
        picture = makePicture(sizeOf(megapixels));
    }
    return picture;
}

double copySeconds(int megapixels) {
    static std::map<int, double> known;
    double &best = known.try_emplace(megapixels, std::numeric_limits<double>::max()).first->second;
    const QImage &from = benchPicture(megapixels);
    QImage to = newPicture(from.width(), from.height());
    uchar *target = to.bits();
    const auto bytes = static_cast<std::size_t>(from.sizeInBytes());
    std::memcpy(target, from.constBits(), bytes);
    for (int i = 0; i < 10; ++i) {
        const Clock::time_point start = Clock::now();
        std::memcpy(target, from.constBits(), bytes);
        benchmark::ClobberMemory();
        best = std::min(best, secondsSince(start));
    }
    return best;
}

void addRows(const char *name, std::function<void(const QImage &picture)> work) {
    benchmark::RegisterBenchmark(name,
                                 [work = std::move(work)](benchmark::State &state) {
                                     const int megapixels = static_cast<int>(state.range(0));
                                     const QImage &picture = benchPicture(megapixels);
                                     const double copy = copySeconds(megapixels);
                                     work(picture); // warms the kept buffers and the worker threads
                                     double best = 1e9;
                                     for (auto step : state) {
                                         const Clock::time_point start = Clock::now();
                                         work(picture);
                                         best = std::min(best, secondsSince(start));
                                     }
                                     // The best of the run against the best copy: other programs only ever add time.
                                     state.counters["x_copy"] = best / copy;
                                     state.counters["ns_px"] =
                                         best * 1e9 / (double(picture.width()) * picture.height());
                                     state.counters["best_ms"] = best * 1e3;
                                 })
        ->Arg(1)
        ->Arg(24)
        ->Arg(96)
        ->Unit(benchmark::kMillisecond);
}

} // namespace lumora
