#include "imaging/transforms/FrameOverlay.h"

#include "imaging/Picture.h"
#include "imaging/Scale.h"
#include "imaging/kernels/Premultiply.h"
#include "imaging/kernels/RowBands.h"
#include "imaging/transforms/Over.h"
#include "imaging/transforms/Resample.h"

#include <algorithm>
#include <cstring>
#include <new>

namespace lumora {

namespace {

struct Columns {
    int begin = 0;
    int end = 0;
};

/// The columns around the middle of a row that are wholly transparent.
Columns holeOf(const std::uint8_t *row, int width) {
    Columns hole{width / 2, width / 2};
    while (hole.begin > 0 && row[4 * (hole.begin - 1) + 3] == 0) {
        --hole.begin;
    }
    while (hole.end < width && row[4 * hole.end + 3] == 0) {
        ++hole.end;
    }
    return hole;
}

/// For each row of the result the columns that the frame leaves alone.
std::vector<Columns> holesOf(ConstPixelView frame, const Resampler &resampler) {
    std::vector<Columns> frameHoles;
    frameHoles.reserve(std::size_t(frame.height));
    for (int y = 0; y < frame.height; ++y) {
        frameHoles.push_back(holeOf(frame.row(y), frame.width));
    }
    std::vector<Columns> holes;
    holes.reserve(resampler.down().first.size());
    const CubicTaps &across = resampler.across();
    for (const int first : resampler.down().first) {
        Columns common{0, frame.width};
        for (int y = first; y < first + resampler.down().count; ++y) {
            common.begin = std::max(common.begin, frameHoles[std::size_t(y)].begin);
            common.end = std::min(common.end, frameHoles[std::size_t(y)].end);
        }
        const auto begin = std::ranges::lower_bound(across.first, common.begin);
        const auto end = std::ranges::upper_bound(across.first, common.end - across.count);
        const int left = static_cast<int>(begin - across.first.begin());
        holes.push_back({left, std::max(left, static_cast<int>(end - across.first.begin()))});
    }
    return holes;
}

/// The same for a row of a photo that is not opaque.
void layOverStraight(const std::uint8_t *over, const std::uint8_t *under, std::uint8_t *to, int pixels) {
    for (const std::uint8_t *end = to + std::ptrdiff_t(4) * pixels; to < end; over += 4, under += 4, to += 4) {
        const int shown = (255 - over[3]) * under[3]; // in 255ths
        const int alpha = over[3] * 255 + shown;
        for (int c = 0; c < 3; ++c) {
            const int colour = std::min(over[c], over[3]) * 255 * 255 + under[c] * shown;
            to[c] = alpha == 0 ? 0 : static_cast<std::uint8_t>(std::min(255, (colour + alpha / 2) / alpha));
        }
        to[3] = static_cast<std::uint8_t>((alpha + 127) / 255);
    }
}

void overlay(ConstPixelView photo, ConstPixelView frame, PixelView target, bool opaque) {
    const Resampler resampler(frame, photo.width, photo.height);
    const std::vector<Columns> holes = holesOf(frame, resampler);
    const auto lay = opaque ? &layOver : &layOverStraight;
    forRowBands(photo.height, photo.width, [&](int first, int end) {
        std::vector<std::int16_t> memory(resampler.rowMemory());
        std::vector<std::uint8_t> frameRow(std::size_t(photo.width) * 4);
        for (int y = first; y < end; ++y) {
            const Columns hole = holes[std::size_t(y)];
            const auto part = [&](int begin, int finish) {
                const std::ptrdiff_t offset = std::ptrdiff_t(4) * begin;
                resampler.writeRow(y, begin, finish, frameRow.data(), memory.data());
                lay(frameRow.data(), photo.row(y) + offset, target.row(y) + offset, finish - begin);
            };
            part(0, hole.begin);
            std::memcpy(target.row(y) + std::ptrdiff_t(4) * hole.begin, photo.row(y) + std::ptrdiff_t(4) * hole.begin,
                        std::size_t(hole.end - hole.begin) * 4);
            part(hole.end, photo.width);
        }
    });
}

} // namespace

QImage framed(const QImage &photo, const QImage &frame) {
    const ConstPixelView source = readView(photo);
    if (source.isEmpty() || readView(frame).isEmpty()) {
        return {};
    }
    const bool opaque = photo.format() == QImage::Format_RGB32;
    if (opaque && frame.size() == photo.size()) {
        QImage result = newPicture(source.width, source.height);
        if (const PixelView target = writeView(result); !target.isEmpty()) {
            layPictureOver(readView(frame), source, target);
        }
        return result;
    }
    const auto averaged = [](int from, int to) { return to <= from / 2 ? to : from; };
    QImage own = scaled(frame, averaged(frame.width(), source.width), averaged(frame.height(), source.height));
    QImage weighted = newPicture(own.width(), own.height(), false);
    const PixelView overlaid = writeView(weighted);
    QImage result = newPicture(source.width, source.height, opaque);
    const PixelView target = writeView(result);
    if (overlaid.isEmpty() || target.isEmpty()) {
        return {};
    }
    premultiply(readView(own), overlaid);
    try {
        overlay(source, readView(weighted), target, opaque);
    } catch (const std::bad_alloc &) { // also from a worker: the loop hands it on
        return {};
    }
    return result;
}

QImage placedPhoto(const QImage &photo, const QRect &place) {
    if (photo.isNull() || place == photo.rect()) {
        return photo;
    }
    const QImage smaller = place.isEmpty() ? QImage() : scaled(photo, place.width(), place.height());
    const ConstPixelView from = readView(smaller);
    QImage result = newPicture(photo.width(), photo.height(), photo.format() == QImage::Format_RGB32);
    const PixelView to = writeView(result);
    if (from.isEmpty() || to.isEmpty()) {
        return {};
    }
    const std::uint32_t around = photo.format() == QImage::Format_RGB32 ? 0xFF000000U : 0;
    forRowBands(to.height, to.width, [&](int first, int end) {
        for (int y = first; y < end; ++y) {
            auto *row = reinterpret_cast<std::uint32_t *>(to.row(y));
            if (y < place.top() || y > place.bottom()) {
                std::fill_n(row, to.width, around);
                continue;
            }
            std::fill_n(row, place.left(), around);
            std::memcpy(row + place.left(), from.row(y - place.top()), std::size_t(place.width()) * 4);
            std::fill(row + place.right() + 1, row + to.width, around);
        }
    });
    return result;
}

} // namespace lumora
