#include "imaging/AllOperations.h"
#include "imaging/EffectEngine.h"
#include "imaging/EffectReference.h"
#include "imaging/Picture.h"
#include "imaging/Region.h"
#include "imaging/Scale.h"
#include "imaging/TargetsForTest.h"
#include "imaging/transforms/Resample.h"
#include "support/TestPictures.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cmath>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <string>

namespace lumora {
namespace {

using test::firstDifference;
using test::forEachTarget;
using test::luma;
using test::photoLike;
using test::withAlphaOf;

// The operations that look at neighbours or at places, as anybody would write them down.

QImage mosaicSlowly(const QImage &picture, double tileWidth, double tileHeight) {
    QImage result = picture.copy();
    const auto border = [](int n, double tile) { return int(std::lround(n * tile)); };
    for (int j = 0; border(j, tileHeight) < picture.height(); ++j) {
        for (int i = 0; border(i, tileWidth) < picture.width(); ++i) {
            const QPoint corner(border(i, tileWidth), border(j, tileHeight));
            const QPoint next(border(i + 1, tileWidth), border(j + 1, tileHeight));
            const QRect tile = QRect(corner, next - QPoint(1, 1)) & picture.rect();
            std::array<std::int64_t, 4> sum{};
            for (int n = 0; n < tile.width() * tile.height(); ++n) {
                const QRgb p = picture.pixel(tile.left() + n % tile.width(), tile.top() + n / tile.width());
                sum[0] += qRed(p) * qAlpha(p);
                sum[1] += qGreen(p) * qAlpha(p);
                sum[2] += qBlue(p) * qAlpha(p);
                sum[3] += qAlpha(p);
            }
            const auto level = [&](int c) { return sum[3] == 0 ? 0 : int((sum[c] + sum[3] / 2) / sum[3]); };
            const std::int64_t count = tile.width() * tile.height();
            const QRgb mean = qRgba(level(0), level(1), level(2), int((sum[3] + count / 2) / count));
            for (int y = tile.top(); y <= tile.bottom(); ++y) {
                std::fill_n(reinterpret_cast<QRgb *>(result.scanLine(y)) + tile.left(), tile.width(), mean);
            }
        }
    }
    return result;
}

/// Three means along a line of bytes, its ends going on for ever, rounded once.
std::vector<int> blurredLine(const std::vector<int> &line, int radius) {
    std::vector<double> kernel = {1};
    for (int pass = 0; pass < 3; ++pass) {
        std::vector<double> wider(kernel.size() + 2 * std::size_t(radius), 0);
        for (std::size_t i = 0; i < kernel.size(); ++i) {
            for (int k = 0; k <= 2 * radius; ++k) {
                wider[i + std::size_t(k)] += kernel[i];
            }
        }
        kernel = wider;
    }
    const float scale = 1.0F / float((2 * radius + 1) * (2 * radius + 1) * (2 * radius + 1));
    std::vector<int> result;
    result.reserve(line.size());
    for (int x = 0; x < int(line.size()); ++x) {
        double sum = 0;
        for (int k = 0; k < int(kernel.size()); ++k) {
            const int from = x + k - 3 * radius;
            sum += kernel[std::size_t(k)] * line[std::size_t(std::clamp(from, 0, int(line.size()) - 1))];
        }
        result.push_back(int(std::nearbyintf(float(sum) * scale)));
    }
    return result;
}

QImage blurredSlowly(const QImage &picture, int radius) {
    const bool opaque = picture.format() == QImage::Format_RGB32;
    QImage result = picture.copy();
    const auto byte = [&](int x, int y, int c) -> uchar & { return result.scanLine(y)[4 * x + c]; };
    const auto everyPixel = [&](const auto &change) {
        for (int y = 0; y < result.height() && !opaque; ++y) {
            for (int x = 0; x < result.width(); ++x) {
                for (int c = 0; c < 3; ++c) {
                    byte(x, y, c) = uchar(change(byte(x, y, c), byte(x, y, 3)));
                }
            }
        }
    };
    const auto blurLines = [&](int lines, int length, const auto &at) {
        for (int i = 0; i < lines * 4; ++i) {
            std::vector<int> line;
            line.reserve(std::size_t(length));
            for (int n = 0; n < length; ++n) {
                line.push_back(at(i / 4, n, i % 4));
            }
            line = blurredLine(line, radius);
            for (int n = 0; n < length; ++n) {
                at(i / 4, n, i % 4) = uchar(line[std::size_t(n)]);
            }
        }
    };
    everyPixel([](int level, int alpha) { return (level * alpha + 127) / 255; });
    blurLines(result.height(), result.width(), [&](int y, int x, int c) -> uchar & { return byte(x, y, c); });
    blurLines(result.width(), result.height(), byte);
    everyPixel([](int level, int alpha) { return alpha == 0 ? 0 : std::min(255, (level * 255 + alpha / 2) / alpha); });
    return result;
}

QRgb multiplied(QRgb p) {
    const auto channel = [&](int value) { return (value * qAlpha(p) + 127) / 255; };
    return withAlphaOf(p, channel(qRed(p)), channel(qGreen(p)), channel(qBlue(p)));
}

QRgb divided(QRgb p) {
    const int alpha = qAlpha(p);
    const auto channel = [&](int value) { return alpha == 0 ? 0 : std::min(255, (value * 255 + alpha / 2) / alpha); };
    return withAlphaOf(p, channel(qRed(p)), channel(qGreen(p)), channel(qBlue(p)));
}

QRgb clampedPixel(const QImage &picture, int x, int y) {
    return picture.pixel(std::clamp(x, 0, picture.width() - 1), std::clamp(y, 0, picture.height() - 1));
}

/// For coefficients that are whole multiples of 2^-bits, `step` pixels apart.
QImage convolvedSlowly(const QImage &picture, std::array<double, 9> coefficients, int offset, int bits, int step = 1) {
    QImage result = picture.copy();
    const bool opaque = picture.format() == QImage::Format_RGB32;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const QRgb middle = picture.pixel(x, y);
            const int one = 1 << bits;
            const std::int64_t start =
                opaque ? std::int64_t(offset) * one : std::int64_t(offset * one / 255) * qAlpha(middle);
            std::array<std::int64_t, 3> sum{start, start, start};
            for (int n = 0; n < 9; ++n) {
                const QRgb p = multiplied(clampedPixel(picture, x + (n % 3 - 1) * step, y + (n / 3 - 1) * step));
                const auto weight = std::int64_t(coefficients[std::size_t(n)] * one);
                sum[0] += weight * qRed(p);
                sum[1] += weight * qGreen(p);
                sum[2] += weight * qBlue(p);
            }
            const auto level = [&](std::size_t c) {
                return int(std::clamp<std::int64_t>((sum[c] + one / 2) >> bits, 0, qAlpha(middle)));
            };
            reinterpret_cast<QRgb *>(result.scanLine(y))[x] =
                divided(withAlphaOf(middle, level(0), level(1), level(2)));
        }
    }
    return result;
}

/// The three samples around a place of an enlarged line and their 32768ths, and what they mix to.
struct Spline {
    Spline(int index, int length, int smallLength) {
        const double place = (index + .5) * smallLength / length;
        nearest = std::min(int(place), smallLength - 1);
        const auto weight = [](double share) { return int(std::lround(share * share * 16384)); };
        before = weight(nearest + 1 - place);
        after = weight(place - nearest);
        last = smallLength - 1;
    }
    template <typename Level> int mixed(const Level &level) const {
        const int here = level(nearest);
        const auto part = [&](int sample, int weight) { return ((level(sample) - here) * weight + (1 << 14)) >> 15; };
        return here + part(std::max(nearest - 1, 0), before) + part(std::min(nearest + 1, last), after);
    }

    int nearest, before, after, last;
};

/// The kernel on means that overlap, and what it changed there, smoothly enlarged, on the picture.
QImage convolvedInUnits(const QImage &picture, std::array<double, 9> coefficients, int offset, int bits, double unit) {
    const double half = std::max(1.0, unit / 2);
    const auto reduced = [&](int side) { return std::max(1, int(std::lround(side / half))); };
    const double share = std::round((unit / half - 1) * 16) / 16; // of places two pixels apart
    const double side = share / 4;
    const double middle = 1 - 2 * side;
    const double corner = side * side;
    const double edge = side * middle;
    const QImage small =
        convolvedSlowly(scaleByAveraging(picture, reduced(picture.width()), reduced(picture.height())),
                        {corner, edge, corner, edge, middle * middle, edge, corner, edge, corner}, 0, 14);
    const QImage near = convolvedSlowly(small, coefficients, offset, bits, 1);
    QImage changed = convolvedSlowly(small, coefficients, offset, bits, 2);
    for (int y = 0; y < small.height(); ++y) {
        for (int i = 0; i < small.width() * 4; ++i) {
            uchar &level = changed.scanLine(y)[i];
            level = static_cast<uchar>(std::floor(near.constScanLine(y)[i] * (1 - share) + level * share + .5));
        }
    }
    QImage result = picture.copy();
    for (int y = 0; y < picture.height(); ++y) {
        const Spline rows(y, picture.height(), small.height());
        for (int i = 0; i < picture.width() * 4; ++i) {
            const int value = Spline(i / 4, picture.width(), small.width()).mixed([&](int x) {
                return rows.mixed([&](int from) {
                    const int at = 4 * x + i % 4;
                    return 32 * (changed.constScanLine(from)[at] - small.constScanLine(from)[at]);
                });
            });
            result.scanLine(y)[i] =
                static_cast<uchar>(std::clamp(picture.constScanLine(y)[i] + ((value + 16) >> 5), 0, 255));
        }
    }
    return result;
}

QRgb towards(QRgb p, int grey, int share) {
    const auto channel = [&](int value) { return (value * (256 - share) + grey * share + 128) / 256; };
    return withAlphaOf(p, channel(qRed(p)), channel(qGreen(p)), channel(qBlue(p)));
}

/// Every pixel of the result by its place.
template <typename Pixel> QImage placed(const QImage &picture, const Pixel &pixelAt) {
    QImage result = picture.copy();
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            reinterpret_cast<QRgb *>(result.scanLine(y))[x] = pixelAt(x, y);
        }
    }
    return result;
}

/// A pixel's place in its tile when a side of `length` is divided into `count`, and the length of that tile.
QPoint placeInTile(int at, int length, int count) {
    const auto border = [&](int tile) { return int(qint64(length) * tile / count); };
    int tile = 0;
    while (border(tile + 1) <= at) {
        ++tile;
    }
    return {at - border(tile), border(tile + 1) - border(tile)};
}

QImage tiledSlowly(const QImage &picture, int across, int down, int unit) {
    const int shorter = std::min(picture.width() / across, picture.height() / down);
    const int most = std::max(1, shorter / 6);
    const int wanted = std::max({shorter / 48, unit, 1});
    const int joint = std::min(wanted, most);
    const int edge = joint + std::min(std::max(shorter / 16, wanted), most);
    return placed(picture, [&](int x, int y) {
        const QRgb p = picture.pixel(x, y);
        const QPoint column = placeInTile(x, picture.width(), across);
        const QPoint row = placeInTile(y, picture.height(), down);
        const int lit = std::min(column.x(), row.x());
        const int dark = std::min(column.y() - 1 - column.x(), row.y() - 1 - row.x());
        if (std::min(lit, dark) < joint) {
            return towards(p, 232, 256);
        }
        if (std::min(lit, dark) >= edge) {
            return p;
        }
        return lit <= dark ? towards(p, 255, 100) : towards(p, 0, 90);
    });
}

/// The photo at 0.78 of its size, over white.
QImage smallerSlowly(const QImage &picture) {
    QImage weighted = placed(picture, [&](int x, int y) { return multiplied(picture.pixel(x, y)); });
    const auto part = [](int length) { return std::max(1, int(std::lround(length * .78))); };
    QImage result(part(picture.width()), part(picture.height()), picture.format());
    resample(readView(weighted), writeView(result));
    return placed(result, [&](int x, int y) {
        const QRgb p = result.pixel(x, y);
        const auto channel = [&](int value) { return std::min(255, value + 255 - qAlpha(p)); };
        return qRgb(channel(qRed(p)), channel(qGreen(p)), channel(qBlue(p)));
    });
}

/// A pixel of the mirror image: first towards white, then darker near the mirror.
QRgb mirrored(QRgb p, int distance, int depth) {
    const double far = (distance + .5) / depth;
    const double white = std::min(1.0, .45 + .605 * far);
    const double light = 1 - .38 * std::exp(-far / .04) * (1 - far);
    const int own = int(std::lround(256 * (1 - white) * light));
    const int added = 255 * int(std::lround(256 * white * light));
    const auto channel = [&](int value) { return (value * own + added + 128) / 256; };
    return withAlphaOf(p, channel(qRed(p)), channel(qGreen(p)), channel(qBlue(p)));
}

QImage reflectedSlowly(const QImage &picture, int style) {
    const int width = picture.width();
    const int height = picture.height();
    const QImage small = smallerSlowly(picture);
    const auto at = [&](int x, int y) { return small.rect().contains(x, y) ? small.pixel(x, y) : qRgb(255, 255, 255); };
    if (style == 1) {
        const int left = (width - small.width()) / 2;
        const int top = std::min(int(std::lround(height * .03)), height - small.height());
        const int line = top + small.height();
        return placed(picture, [&](int x, int y) {
            const bool beside = x < left || x >= left + small.width();
            return y < line || beside ? at(x - left, y - top)
                                      : mirrored(at(x - left, 2 * line - 1 - y - top), y - line, height - line);
        });
    }
    if (style == 2) {
        const int line = (height + 1) / 2;
        return placed(picture, [&](int x, int y) {
            const double near = double(y - line + 1) / (height - line);
            const double swing = y < line ? 0 : std::sin(28 * std::acos(-1.0) * std::sqrt(near));
            const int from = x - int(std::lround(width * 0.012 * near * swing));
            return y < line ? picture.pixel(x, y)
                            : towards(clampedPixel(picture, from, 2 * line - 1 - y), 24, 56 + int(40 * near));
        });
    }
    if (style == 3) {
        const int left = std::min(int(std::lround(width * .03)), width - small.width());
        const int top = (height - small.height()) / 2;
        const int line = left + small.width();
        return placed(picture, [&](int x, int y) {
            const bool beside = y < top || y >= top + small.height();
            return x < line || beside ? at(x - left, y - top)
                                      : mirrored(at(2 * line - 1 - x - left, y - top), x - line, width - line);
        });
    }
    return placed(picture, [&](int x, int y) {
        return picture.pixel(std::min(x, 2 * ((width + 1) / 2) - 1 - x), std::min(y, 2 * ((height + 1) / 2) - 1 - y));
    });
}

QRgb mixed(QRgb a, QRgb b, int ofB) {
    const auto channel = [&](int x, int y) { return (x * (256 - ofB) + y * ofB + 128) / 256; };
    return qRgba(channel(qRed(a), qRed(b)), channel(qGreen(a), qGreen(b)), channel(qBlue(a), qBlue(b)),
                 channel(qAlpha(a), qAlpha(b)));
}

QImage inPerspectiveSlowly(const QImage &picture, int angle, QRgb background) {
    const double sine = std::sin(angle * std::acos(-1.0) / 180);
    const double cosine = std::cos(angle * std::acos(-1.0) / 180);
    const double half = picture.width() / 2.0;
    const double eye = 3 * half;
    const double near = eye - half * std::abs(sine);
    const auto projected = [&](double x) { return x * cosine * near / (eye + x * sine); };
    const auto at = [&](int x, int y) {
        return picture.rect().contains(x, y) ? multiplied(picture.pixel(x, y)) : background;
    };
    return placed(picture, [&](int x, int y) {
        const double u = x + 0.5 - half + (projected(half) + projected(-half)) / 2;
        const double from = u * eye / (near * cosine - u * sine);
        const double column = std::floor((from + half - 0.5) * 256 + 0.5) / 256;
        if (column <= -1 || column >= picture.width()) {
            return background;
        }
        const double step = std::round((eye + from * sine) / near * (1 << 20)) / (1 << 20);
        const double row = (2.0 * y + 1 - picture.height()) / 2 * step + (picture.height() - 1) / 2.0;
        const int left = int(std::floor(column));
        const int top = int(std::floor(row));
        const int across = int((column - left) * 256);
        return divided(mixed(mixed(at(left, top), at(left + 1, top), across),
                             mixed(at(left, top + 1), at(left + 1, top + 1), across), int((row - top) * 256)));
    });
}

struct AreaEffect {
    const char *name;
    Operation operation;
    std::function<QImage(const QImage &)> reference;
};

const std::vector<AreaEffect> &areaEffects() {
    const auto mosaic = [](double width, double height) {
        return AreaEffect{"mosaic", {applyMosaic, {width, height}}, [=](const QImage &p) {
                              return mosaicSlowly(p, std::clamp(width, 1.0, double(p.width())),
                                                  std::clamp(height, 1.0, double(p.height())));
                          }};
    };
    const auto blur = [](int asked, int used) {
        return AreaEffect{
            "blur", {applyBlur, {double(asked)}}, [=](const QImage &p) { return blurredSlowly(p, used); }};
    };
    const auto convolution = [](std::array<float, 9> asked, int offset, std::array<double, 9> used, int usedOffset,
                                int bits) {
        return AreaEffect{"convolve", {applyConvolution, {asked, offset}}, [=](const QImage &p) {
                              return convolvedSlowly(p, used, usedOffset, bits);
                          }};
    };
    const auto tracing = [](double unit) {
        return AreaEffect{"tracing", {applyConvolution, {{1, 1, 1, 1, -7, 1, 1, 1, 1}, 0, unit}}, [=](const QImage &p) {
                              return convolvedInUnits(p, {1, 1, 1, 1, -7, 1, 1, 1, 1}, 0, 12, unit);
                          }};
    };
    const auto emboss = [](int asked, int used) {
        return AreaEffect{"colourEmboss", {applyColourEmboss, {asked}}, [=](const QImage &p) {
                              const double d = used;
                              return convolvedSlowly(p, {-2 * d, -d, 0, -d, 1, d, 0, d, 2 * d}, 0, 10);
                          }};
    };
    const auto highPass = [](int asked, int used) {
        return AreaEffect{"highPassSharpen", {applyHighPassSharpen, {asked}}, [=](const QImage &p) {
                              const double c = -(2 + used / 32.0) / 16;
                              return convolvedSlowly(p, {c, 2 * c, c, 2 * c, 1 - 12 * c, 2 * c, c, 2 * c, c}, 0, 9);
                          }};
    };
    static const std::vector<AreaEffect> effects = {
        mosaic(2.3, 11.61),
        mosaic(10, 10),
        mosaic(1, 1),
        mosaic(3, 50),
        mosaic(INT_MAX, 2),
        mosaic(INT_MIN, 0),
        blur(0, 0),
        blur(1, 1),
        blur(6, 6),
        blur(100, 100),
        blur(INT_MIN, 0),
        convolution({1, 1, 1, 1, -7, 1, 1, 1, 1}, 0, {1, 1, 1, 1, -7, 1, 1, 1, 1}, 0, 12),
        convolution({.5F, 0, 0, 0, -.25F, 0, 0, 0, -.125F}, 100, {.5, 0, 0, 0, -.25, 0, 0, 0, -.125}, 100, 14),
        convolution({1e9F, 0, -1e9F, 0, 1, 0, 0, 0, 0}, INT_MIN, {32767, 0, -32767, 0, 1, 0, 0, 0, 0}, -32767, 0),
        tracing(1.4),
        tracing(2),
        tracing(3.7),
        tracing(12),
        emboss(1, 1),
        emboss(-3, -3),
        emboss(INT_MAX, 10),
        emboss(INT_MIN, -10),
        highPass(0, 0),
        highPass(33, 33),
        highPass(INT_MAX, 100),
        highPass(INT_MIN, 0),
        {"sharpen",
         {applySharpen, {}},
         [](const QImage &p) {
             return convolvedSlowly(p, {0, -1, 0, -1, 5, -1, 0, -1, 0}, 0, 12);
         }},
    };
    return effects;
}

/// Those that always take the whole picture.
const std::vector<AreaEffect> &wholeEffects() {
    const auto tile = [](int across, int down, int unit) {
        return AreaEffect{"tile", {applyTile, {across, down, double(unit)}}, [=](const QImage &p) {
                              return tiledSlowly(p, std::clamp(across, 1, p.width()), std::clamp(down, 1, p.height()),
                                                 unit);
                          }};
    };
    const auto reflection = [](int style) {
        return AreaEffect{
            "reflection", {applyReflection, {style}}, [=](const QImage &p) { return reflectedSlowly(p, style); }};
    };
    const auto perspective = [](std::array<int, 4> asked, int angle, QRgb background) {
        return AreaEffect{"perspective",
                          {applyPerspective, {asked[0], asked[1], asked[2], asked[3]}},
                          [=](const QImage &p) { return inPerspectiveSlowly(p, angle, background); }};
    };
    const AreaEffect besideHoles = {"perspective", {applyPerspective, {20, 255, 255, 255, true}}, [](const QImage &p) {
                                        return inPerspectiveSlowly(p, 20,
                                                                   p.hasAlphaChannel() ? 0 : qRgb(255, 255, 255));
                                    }};
    static const std::vector<AreaEffect> effects = {
        besideHoles,
        perspective({-30, 255, 255, 255}, -30, qRgb(255, 255, 255)),
        perspective({0, 9, 8, 7}, 0, qRgb(9, 8, 7)),
        perspective({INT_MAX, INT_MAX, 40, INT_MIN}, 60, qRgb(255, 40, 0)),
        perspective({INT_MIN, 1, 2, 3}, -60, qRgb(1, 2, 3)),
        tile(5, 5, 1),
        tile(2, 1, 1),
        tile(INT_MAX, INT_MAX, 1),
        tile(INT_MIN, 0, 1),
        tile(4, 7, 3),
        reflection(1),
        reflection(2),
        reflection(3),
        reflection(4),
    };
    return effects;
}

TEST(EffectArea, neighboursCountAsInTheReferenceInEveryVersion) {
    const QSize sizes[] = {{1, 1}, {2, 3}, {3, 2}, {5, 17}, {63, 7}, {1, 600}, {135, 70}};
    std::vector<AreaEffect> effects = areaEffects();
    effects.insert(effects.end(), wholeEffects().begin(), wholeEffects().end());
    for (const AreaEffect &effect : effects) {
        for (const QSize size : sizes) {
            for (const bool transparent : {false, true}) {
                const QImage picture = photoLike(size.width(), size.height(), transparent);
                const QImage before = picture.copy();
                const QImage expected = effect.reference(picture);
                forEachTarget([&] {
                    EffectEngine engine;
                    engine.setPicture(picture);
                    ASSERT_TRUE(engine.apply(effect.operation, false)) << effect.name;
                    ASSERT_EQ(engine.picture().format(), picture.format());
                    ASSERT_EQ(firstDifference(engine.picture(), expected), QPoint(-1, -1))
                        << effect.name << ' ' << size.width() << " x " << size.height() << ' ' << transparent;
                });
                ASSERT_EQ(firstDifference(picture, before), QPoint(-1, -1)) << effect.name << " wrote to its source";
            }
        }
    }
}

// What goes to work in several blocks, strips or bands must not show where they meet.
TEST(EffectArea, largePicturesShowNoSeams) {
    const QImage picture = photoLike(401, 1037);
    for (const AreaEffect &effect : areaEffects()) {
        if (std::string(effect.name) != "blur") {
            EffectEngine engine;
            engine.setPicture(picture);
            ASSERT_TRUE(engine.apply(effect.operation, false));
            EXPECT_EQ(firstDifference(engine.picture(), effect.reference(picture)), QPoint(-1, -1)) << effect.name;
        }
    }
}

TEST(EffectArea, neighboursOutsideTheRegionCountButDoNotChange) {
    for (const bool transparent : {false, true}) {
        const QImage picture = photoLike(141, 90, transparent);
        for (const AreaEffect &effect : areaEffects()) {
            const QImage whole = effect.reference(picture);
            for (const bool ellipse : {false, true}) {
                for (const QRect box : {QRect(60, 30, 33, 21), QRect(-9, -9, 40, 300), QRect(139, 0, 1, 90)}) {
                    EffectEngine engine;
                    engine.setPicture(picture);
                    const auto make = ellipse ? &Region::ellipse : &Region::rectangle;
                    const int right = box.left() + box.width();
                    const int bottom = box.top() + box.height();
                    (engine.*(ellipse ? &EffectEngine::setEllipticalRegion : &EffectEngine::setRectangularRegion))(
                        box.left(), box.top(), right, bottom);
                    ASSERT_TRUE(engine.apply(effect.operation, true));
                    const Region region = make(141, 90, box.left(), box.top(), right, bottom);
                    QImage expected = picture.copy();
                    for (int i = 0; i < 141 * 90; ++i) {
                        if (region.contains(i % 141, i / 141)) {
                            reinterpret_cast<QRgb *>(expected.scanLine(i / 141))[i % 141] =
                                whole.pixel(i % 141, i / 141);
                        }
                    }
                    ASSERT_EQ(firstDifference(engine.picture(), expected), QPoint(-1, -1)) << effect.name << ellipse;
                }
            }
        }
    }
}

TEST(EffectArea, whatCannotBeDoneIsRefusedAndLeavesThePicture) {
    EffectEngine engine;
    for (const auto &effects : {areaEffects(), wholeEffects()}) {
        for (const AreaEffect &effect : effects) {
            EXPECT_FALSE(engine.apply(effect.operation, false)) << effect.name << " without a picture";
        }
    }
    const QImage picture = photoLike(9, 9);
    engine.setPicture(picture);
    for (const int style : {INT_MIN, 0, 5, INT_MAX}) {
        EXPECT_FALSE(engine.apply({applyReflection, {style}}, false));
    }
    EXPECT_FALSE(engine.apply({applyTexture, {1, 0, 1}}, false)) << "no such layout";
    for (const float bad : {std::nanf(""), std::numeric_limits<float>::infinity()}) {
        EXPECT_FALSE(engine.apply({applyConvolution, {{0, 0, 0, 0, 1, 0, 0, bad, 0}}}, false));
    }
    EXPECT_EQ(engine.picture().constBits(), picture.constBits());
}

} // namespace
} // namespace lumora
