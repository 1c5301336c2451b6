#include "BenchPicture.h"

#include "imaging/Picture.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstring>
#include <map>
#include <random>
#include <vector>

namespace lumora {

namespace {

using Clock = std::chrono::steady_clock;

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

namespace {

double median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

template <typename Work> double secondsOf(const Work &work) {
    const Clock::time_point start = Clock::now();
    work();
    benchmark::ClobberMemory();
    return std::chrono::duration<double>(Clock::now() - start).count();
}

void runRow(benchmark::State &state, const std::function<void(const QImage &)> &work,
            const std::function<void()> &afterwards) {
    const QImage &picture = benchPicture(static_cast<int>(state.range(0)));
    QImage copyOfIt = newPicture(picture.width(), picture.height());
    uchar *target = copyOfIt.bits();
    const auto copy = [&] { std::memcpy(target, picture.constBits(), std::size_t(picture.sizeInBytes())); };
    copy();        // touches the pages
    work(picture); // warms the kept buffers and the worker threads
    afterwards();
    // A copy beside every round and the medians of both: what else the machine does then weighs on both alike.
    std::vector<double> rounds;
    std::vector<double> copies;
    for (auto step : state) {
        rounds.push_back(secondsOf([&] { work(picture); }));
        state.PauseTiming();
        afterwards();
        copies.push_back(secondsOf(copy));
        state.ResumeTiming();
    }
    const double seconds = median(rounds);
    state.counters["median_ms"] = seconds * 1e3;
    state.counters["ns_px"] = seconds * 1e9 / (double(picture.width()) * picture.height());
    state.counters["x_copy"] = seconds / median(copies);
}

} // namespace

void addRows(const char *name, std::function<void(const QImage &picture)> work, std::function<void()> afterwards) {
    benchmark::RegisterBenchmark(name, [work = std::move(work), afterwards = std::move(afterwards)](
                                           benchmark::State &state) { runRow(state, work, afterwards); })
        ->Arg(1)
        ->Arg(24)
        ->Arg(96)
        ->Unit(benchmark::kMillisecond);
}

} // namespace lumora
