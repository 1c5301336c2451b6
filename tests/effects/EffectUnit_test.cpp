// Effects look alike on small and large photos: on the icon, in the live preview and on the photo itself.
#include "effects/EffectTable.h"
#include "imaging/EffectEngine.h"
#include "imaging/PictureFile.h"
#include "imaging/Scale.h"
#include "support/TestPictures.h"

#include <QDir>
#include <cmath>
#include <gtest/gtest.h>

namespace lumora {
namespace {

constexpr int iconSide = 96;   // pixels, as in the floating bars
constexpr int tableSide = 900; // how wide a photo is that fits a window

QImage fitted(const QImage &picture, int side) {
    const QSize size = picture.size().scaled(side, side, Qt::KeepAspectRatio);
    return scaled(picture, size.width(), size.height());
}

/// Root of the mean square of the differences, levels.
double difference(const QImage &a, const QImage &b) {
    EXPECT_EQ(a.size(), b.size());
    double sum = 0;
    for (int y = 0; y < a.height(); ++y) {
        const QRgb *p = test::row(a, y);
        const QRgb *q = test::row(b, y);
        for (int x = 0; x < a.width(); ++x) {
            const int red = qRed(p[x]) - qRed(q[x]);
            const int green = qGreen(p[x]) - qGreen(q[x]);
            const int blue = qBlue(p[x]) - qBlue(q[x]);
            sum += red * red + green * green + blue * blue;
        }
    }
    return std::sqrt(sum / 3 / a.width() / a.height());
}

/// Decibels.
double likeness(const QImage &a, const QImage &b) {
    return 20 * std::log10(255 / std::max(difference(a, b), 1e-6));
}

QImage with(const Effect &effect, const QImage &picture, double unit) {
    EffectEngine engine;
    engine.setPicture(picture);
    EXPECT_TRUE(engine.apply(operationOf(effect, false, effect.basic, unit), false)) << effect.name;
    return engine.picture();
}

/// A photo of the collection at another size; with detail of its own at any size.
QImage photoOf(const char *name, int width, int height) {
    const QString folder = qEnvironmentVariable("LUMORA_SOURCE") + "/resources/installed/My Photos/";
    QImage photo = readPicture(folder + name).picture;
    EXPECT_FALSE(photo.isNull()) << name;
    return scaled(photo, width, height);
}

const char *const photos[] = {"animals/elephants.jpg", "animals/hedgehog.jpg", "machines/steam locomotive.jpg"};

/// Those whose lengths are in units.
const char *const effectsInUnits[] = {"SFX3", "SFX4", "SFX5", "SFX6", "SFX7", "SFX9", "SFX10"};

TEST(EffectUnit, ThePhotoChangesAsItsIconDoes) {
    for (const char *name : photos) {
        for (const int width : {1152, name == photos[0] ? 6000 : 3000}) {
            const QImage photo = photoOf(name, width, width * 3 / 4);
            const QImage shown = fitted(photo, tableSide);
            for (const char *key : effectsInUnits) {
                const Effect &effect = *findEffect(EffectGroup::Special, QString("key") + key);
                const QImage copy = fitted(photo, effect.iconCopy);
                const QImage icon = fitted(copy, iconSide);
                const QImage onIcon = fitted(with(effect, copy, 1), iconSide);
                const QImage onPhoto = fitted(with(effect, photo, effectUnit(photo.size())), tableSide);
                const double ratio = difference(onPhoto, shown) / difference(onIcon, icon);
                EXPECT_TRUE(ratio > 0.7 && ratio < 1.4) << key << ' ' << name << ' ' << width << ": " << ratio;
            }
        }
    }
}

QImage reducedBy(int factor, const QImage &picture) {
    return factor == 1 ? picture : boxReduced(picture, factor);
}

TEST(EffectUnit, AReducedPhotoAndTheLivePictureShowWhatThePhotoWillBe) {
    for (const int width : {4000, 3000}) {
        const QImage photo = photoOf(photos[0], width, width * 3 / 4);
        const double unit = effectUnit(photo.size());
        for (const Effect &effect : effects(EffectGroup::Special)) {
            const QImage applied = with(effect, photo, unit);
            for (const int factor : {2, 4}) {
                SCOPED_TRACE(testing::Message() << effect.name << ' ' << width << " at 1 / " << factor);
                const QImage shown = boxReduced(applied, factor);
                EXPECT_GT(likeness(shown, with(effect, boxReduced(photo, factor), unit / factor)), 28);
                int live = factor; // what the live picture is computed on
                while (effect.coarsestLive > 0 && live > std::max(1.0, effect.coarsestLive * unit)) {
                    live /= 2;
                }
                const QImage picture = with(effect, reducedBy(live, photo), unit / live);
                EXPECT_GT(likeness(shown, reducedBy(factor / live, picture)), 30);
            }
        }
    }
}

} // namespace
} // namespace lumora
