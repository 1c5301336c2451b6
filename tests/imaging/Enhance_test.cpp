// "Enhance" is judged by how near it brings spoilt photos to what they were, and by leaving good ones as they are.
#include "imaging/AllOperations.h"
#include "imaging/ColourDifference.h"
#include "imaging/EffectEngine.h"
#include "imaging/Picture.h"
#include "imaging/Scale.h"
#include "imaging/TargetsForTest.h"
#include "support/TestPictures.h"

#include <QDirIterator>
#include <algorithm>
#include <array>
#include <cmath>
#include <gtest/gtest.h>

namespace lumora {
namespace {

using test::colourDifference;
using test::meanColourDifference;

QImage enhanced(const QImage &picture, int amount = 50) {
    EffectEngine engine;
    engine.setPicture(picture);
    EXPECT_TRUE(engine.apply({applyEnhance, {amount}}, false));
    return engine.picture();
}

struct Photo {
    std::string name;
    QImage picture;
};

/// The sample photos, as large as the copies that are looked at.
const std::vector<Photo> &photos() {
    static const std::vector<Photo> all = [] {
        std::vector<Photo> found;
        const QString folder = qEnvironmentVariable("LUMORA_SOURCE") + "/resources/installed/My Photos";
        for (QDirIterator file(folder, {"*.jpg"}, QDir::Files, QDirIterator::Subdirectories); file.hasNext();) {
            const QImage photo = toPicture(QImage(file.next()));
            const QSize size = photo.size().scaled(256, 256, Qt::KeepAspectRatio);
            found.push_back(
                {file.fileInfo().baseName().toStdString(), scaleByAveraging(photo, size.width(), size.height())});
        }
        return found;
    }();
    return all;
}

/// What is done to a photo: the light is multiplied in linear light, then what the picture stores gets a gamma and is
/// mixed with a grey.
struct Spoiling {
    const char *name;
    std::array<double, 3> light; ///< red, green, blue
    double gamma;
    double kept; ///< the share that is not the grey
    double grey;
    double meanRatio;  ///< the mean difference to the unspoilt photos, afterwards over before: at most
    int mayBeFarther;  ///< photos that get farther from it by more than half a unit: at most
    double worstRatio; ///< for any photo
};

QImage spoilt(const QImage &picture, const Spoiling &how) {
    std::array<std::array<int, 256>, 3> tables{}; // red, green, blue
    for (size_t c = 0; c < 3; ++c) {
        for (size_t level = 0; level < 256; ++level) {
            const double stored = double(level) / 255;
            const double linear =
                how.light.at(c) * (stored <= 0.04045 ? stored / 12.92 : std::pow((stored + 0.055) / 1.055, 2.4));
            const double again = linear <= 0.0031308 ? linear * 12.92 : 1.055 * std::pow(linear, 1 / 2.4) - 0.055;
            const double mixed = std::pow(std::min(again, 1.0), how.gamma) * how.kept + how.grey * (1 - how.kept);
            tables.at(c).at(level) = std::clamp(int(std::lround(mixed * 255)), 0, 255);
        }
    }
    QImage result = picture.copy();
    for (int y = 0; y < result.height(); ++y) {
        auto *row = reinterpret_cast<QRgb *>(result.scanLine(y));
        for (int x = 0; x < result.width(); ++x) {
            row[x] = qRgb(tables[0].at(size_t(qRed(row[x]))), tables[1].at(size_t(qGreen(row[x]))),
                          tables[2].at(size_t(qBlue(row[x]))));
        }
    }
    return result;
}

/// The share of pixels that have come to an end of the scale in some channel.
double newlyClipped(const QImage &before, const QImage &after) {
    const auto atEnd = [](int level) { return level == 0 || level == 255; };
    int count = 0;
    for (int y = 0; y < before.height(); ++y) {
        for (int x = 0; x < before.width(); ++x) {
            const QRgb p = before.pixel(x, y);
            const QRgb q = after.pixel(x, y);
            count += (atEnd(qRed(q)) && !atEnd(qRed(p))) || (atEnd(qGreen(q)) && !atEnd(qGreen(p))) ||
                             (atEnd(qBlue(q)) && !atEnd(qBlue(p)))
                         ? 1
                         : 0;
        }
    }
    return double(count) / (before.width() * before.height());
}

TEST(ColourDifference, IsThatOfThePublishedPairs) {
    // Pairs 1, 7, 14, 17, 20 and 34 of Sharma, Wu and Dalal.
    const struct {
        test::LabColour first, second;
        double difference;
    } pairs[] = {{{50, 2.6772, -79.7751}, {50, 0, -82.7485}, 2.0425},
                 {{50, 0, 0}, {50, -1, 2}, 2.3669},
                 {{50, -0.001, 2.49}, {50, 0.0011, -2.49}, 4.7461},
                 {{50, 2.5, 0}, {73, 25, -18}, 27.1492},
                 {{50, 2.5, 0}, {58, 24, 15}, 19.4535},
                 {{2.0776, 0.0795, -1.135}, {0.9033, -0.0636, -0.5514}, 0.9082}};
    for (const auto &[first, second, difference] : pairs) {
        EXPECT_NEAR(colourDifference(first, second), difference, 0.0001);
    }
}

TEST(Enhance, AGoodPhotoKeepsItsLook) {
    ASSERT_GT(photos().size(), 30U);
    double sum = 0;
    for (const auto &[name, photo] : photos()) {
        const QImage result = enhanced(photo);
        const double difference = meanColourDifference(photo, result, 4);
        EXPECT_LT(difference, 3.5) << name;
        EXPECT_LT(newlyClipped(photo, result), 0.005) << name;
        sum += difference;
    }
    EXPECT_LT(sum / double(photos().size()), 1.2);
}

TEST(Enhance, ASpoiltPhotoComesNearerToWhatItWas) {
    const Spoiling spoilings[] = {
        {"a little dark", {.5, .5, .5}, 1, 1, 0, .35, 0, .6},
        {"very dark", {.25, .25, .25}, 1, 1, 0, .3, 0, .4},
        {"a little bright", {1, 1, 1}, .8, 1, 0, .85, 4, 1.5},
        {"bright", {1, 1, 1}, .6, 1, 0, .8, 4, 1.25},
        {"thin haze", {1, 1, 1}, 1, .75, .85, .6, 3, 1.25},
        {"haze", {1, 1, 1}, 1, .5, .85, .5, 0, .85},
        {"dull", {1, 1, 1}, 1, .7, .5, .7, 3, 1.5},
        {"very dull", {1, 1, 1}, 1, .5, .5, .6, 2, 1.3},
        {"yellowish", {1.05, 1, .7}, 1, 1, 0, .7, 1, 1.2},
        {"yellow", {1.2, 1, .45}, 1, 1, 0, .6, 0, 1.1},
        {"bluish", {.8, 1, 1.2}, 1, 1, 0, .85, 6, 1.3},
        {"blue", {.6, .95, 1.4}, 1, 1, 0, .8, 3, 1.2},
        {"dark and yellow", {.4, .35, .2}, 1, 1, 0, .5, 0, .65},
        {"dark and dull", {.4, .4, .4}, 1, .7, .3, .3, 0, .65},
    };
    for (const Spoiling &how : spoilings) {
        SCOPED_TRACE(how.name);
        double before = 0;
        double after = 0;
        double worst = 0;
        int farther = 0;
        std::string which;
        for (const auto &[name, photo] : photos()) {
            const QImage bad = spoilt(photo, how);
            const double was = meanColourDifference(photo, bad, 6);
            const double is = meanColourDifference(photo, enhanced(bad), 6);
            before += was;
            after += is;
            farther += is > was + 0.5 ? 1 : 0;
            if (is / was > worst) {
                worst = is / was;
                which = name;
            }
        }
        EXPECT_LE(after / before, how.meanRatio);
        EXPECT_LE(farther, how.mayBeFarther);
        EXPECT_LE(worst, how.worstRatio) << which;
    }
}

TEST(Enhance, TheSliderGoesFromNothingToAll) {
    const QImage &photo = photos().front().picture;
    const QImage dark = spoilt(photo, {"", {.2, .2, .2}, 1, 1, 0, 0, 0, 0});
    double farthest = meanColourDifference(photo, dark);
    EXPECT_EQ(test::firstDifference(enhanced(dark, 0), dark), test::nowhere);
    EXPECT_EQ(test::firstDifference(enhanced(dark, -7), dark), test::nowhere);
    for (const int amount : {20, 50, 75, 100}) {
        const double now = meanColourDifference(photo, enhanced(dark, amount));
        EXPECT_LT(now, farthest * 0.95) << amount;
        farthest = now;
    }
    EXPECT_EQ(test::firstDifference(enhanced(dark, 100), enhanced(dark, 1000)), test::nowhere);
}

TEST(Enhance, AReducedCopyShowsWhatThePhotoWillGet) {
    const QString folder = qEnvironmentVariable("LUMORA_SOURCE") + "/resources/installed/My Photos/";
    for (const char *name : {"animals/owl.jpg", "geographical features/volcano.jpg"}) {
        const QImage photo = spoilt(toPicture(QImage(folder + name)), {"", {.5, .45, .3}, 1, 1, 0, 0, 0, 0});
        const QImage small = boxReduced(photo, 4);
        const QImage wanted = boxReduced(enhanced(photo), 4);
        EXPECT_LT(meanColourDifference(enhanced(small), wanted), 0.5) << name;
        EXPECT_GT(meanColourDifference(small, wanted), 5) << name;
    }
}

TEST(Enhance, EveryProcessorGivesTheSame) {
    for (const QSize size : {QSize(1, 1), QSize(7, 3), QSize(333, 222), QSize(1030, 611)}) {
        const QImage picture =
            spoilt(test::photoLike(size.width(), size.height()), {"", {.5, .4, .3}, 1, 1, 0, 0, 0, 0});
        QImage first;
        test::forEachTarget([&] {
            const QImage result = enhanced(picture, 80);
            first = first.isNull() ? result : first;
            EXPECT_EQ(test::firstDifference(result, first), test::nowhere);
        });
    }
}

TEST(Enhance, LargeEdgesGetNoHaloAndNothingIsTurnedRound) {
    QImage edge(400, 40, QImage::Format_RGB32);
    for (int y = 0; y < edge.height(); ++y) {
        for (int x = 0; x < edge.width(); ++x) {
            const int level = (x < 200 ? 50 : 205) + x % 7; // with a little texture
            edge.setPixel(x, y, qRgb(level, level, level));
        }
    }
    const QImage result = enhanced(edge);
    const auto level = [&](int x) { return qGray(result.pixel(x, 20)); };
    EXPECT_NEAR(level(195), level(6), 8); // the same phase, beside the edge and far from it
    EXPECT_NEAR(level(203), level(399), 8);
    QImage ramp(256, 256, QImage::Format_RGB32);
    for (int x = 0; x < 256; ++x) {
        for (int y = 0; y < 256; ++y) {
            ramp.setPixel(x, y, qRgb(x, x, x));
        }
    }
    const QImage steeper = enhanced(ramp, 100);
    for (int x = 1; x < 256; ++x) {
        EXPECT_GE(qGray(steeper.pixel(x, 128)), qGray(steeper.pixel(x - 1, 128))) << x;
    }
}

TEST(Enhance, OneColourAndWhatCannotBeSeenSayNothing) {
    QImage plain(60, 40, QImage::Format_RGB32);
    for (const QRgb colour : {qRgb(0, 0, 0), qRgb(255, 255, 255), qRgb(30, 20, 10), qRgb(250, 200, 90)}) {
        plain.fill(colour);
        const QImage result = enhanced(plain);
        EXPECT_EQ(test::firstDifference(result, plain), test::nowhere) << QColor(colour).name().toStdString();
    }
    // Transparent white around a dark photo.
    const QImage dark = spoilt(photos().front().picture, {"", {.3, .3, .3}, 1, 1, 0, 0, 0, 0});
    QImage framed(dark.width() * 2, dark.height(), QImage::Format_ARGB32);
    framed.fill(qRgba(255, 255, 255, 0));
    for (int y = 0; y < dark.height(); ++y) {
        for (int x = 0; x < dark.width(); ++x) {
            framed.setPixel(x, y, dark.pixel(x, y));
        }
    }
    EXPECT_LT(
        meanColourDifference(enhanced(framed).copy(dark.rect()).convertToFormat(QImage::Format_RGB32), enhanced(dark)),
        1);
}

} // namespace
} // namespace lumora
