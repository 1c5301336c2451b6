// Rows for what moves, scales and mixes whole pictures, and for the canvas.
#include "BenchPicture.h"
#include "BenchRows.h"

#include "imaging/Picture.h"
#include "imaging/Scale.h"
#include "imaging/effects/ColourFocus.h"
#include "imaging/transforms/Canvas.h"
#include "imaging/transforms/FrameOverlay.h"
#include "imaging/transforms/Transform.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace lumora {

namespace {

/// A frame as the artwork draws them: 1200 x 800, an eighth of it on either side, transparent in the middle.
const QImage &benchFrame() {
    static const QImage frame = [] {
        QImage made(1200, 800, QImage::Format_ARGB32);
        made.fill(qRgba(180, 120, 60, 200));
        for (int y = 100; y < 700; ++y) {
            std::fill_n(reinterpret_cast<QRgb *>(made.scanLine(y)) + 150, 900, qRgba(0, 0, 0, 0));
        }
        return made;
    }();
    return frame;
}

/// A wavy line of 30,000 points round most of the picture.
std::vector<PicturePoint> benchLasso(const QImage &picture) {
    std::vector<PicturePoint> line;
    for (int i = 0; i < 30'000; ++i) {
        const double turn = i * 2 * std::numbers::pi / 30'000;
        const double radius = 0.45 + 0.04 * std::sin(turn * 90);
        line.push_back(
            {picture.width() * (0.5 + radius * std::cos(turn)), picture.height() * (0.5 + radius * std::sin(turn))});
    }
    return line;
}

void addTransform(const char *name, QImage (*transform)(const QImage &picture)) {
    addRows(name, [transform](const QImage &picture) { benchmark::DoNotOptimize(transform(picture).constBits()); });
}

} // namespace

void addTransformRows() {
    addTransform("QuarterTurn", quarterTurnedClockwise);
    addTransform("HalfTurn", halfTurned);
    addTransform("Flip", flippedVertically);
    addTransform("Mirror", mirrored);
    addTransform("Rotate7", [](const QImage &picture) { return rotated(picture, 7); });
    addTransform("Rotate40", [](const QImage &picture) { return rotated(picture, 40); });
    // 5000 wide for 6000 wide.
    addTransform("ScaleToFiveSixths", [](const QImage &picture) {
        return scaled(picture, picture.width() * 5 / 6, picture.height() * 5 / 6);
    });
    addRows("FrameOverlay", [frame = QImage()](const QImage &picture) mutable {
        if (frame.size() != picture.size()) {
            frame = scaled(benchFrame(), picture.width(), picture.height());
        }
        benchmark::DoNotOptimize(framed(picture, frame).constBits());
    });
    addTransform("FrameOverlayScaled", [](const QImage &picture) { return framed(picture, benchFrame()); });
    addTransform("ColourFocus", [](const QImage &picture) {
        QImage result = newPicture(picture.width(), picture.height());
        const PixelView target = writeView(result);
        applyColourFocus({200, 60, 40, 30}, readView(picture), target, wholeOf(target));
        return result;
    });
    // A hundred clicks, so that the copy beside every round does not take all the time.
    addRows("RedEye50Hundredfold", [own = QImage()](const QImage &picture) mutable {
        if (own.size() != picture.size()) {
            own = picture;
            writeView(own); // its own pixels, once
        }
        for (int i = 0; i < 100; ++i) {
            benchmark::DoNotOptimize(removeRedEye(own, picture.width() * i / 100, picture.height() / 2, 50));
        }
    });
    addRows("LassoPaste", [](const QImage &picture) {
        const Region region = Region::lasso(picture.width(), picture.height(), benchLasso(picture));
        QImage result = picture;
        benchmark::DoNotOptimize(pasteThrough(result, picture, region, 0, 0, 100));
    });
}

} // namespace lumora
