// What holds for every operation, and one stored picture of each that somebody has looked at.
#include "imaging/EffectEngine.h"
#include "imaging/Picture.h"
#include "support/TestPictures.h"

#include <QDir>
#include <gtest/gtest.h>

namespace lumora {
namespace {

using test::firstDifference;
using test::photoLike;

enum Traits {
    Plain = 0,
    KeepsAlpha = 1,     ///< each pixel its own
    TakesTheRegion = 2, ///< others always take the whole picture
    SwapsSides = 4,
    MakesARow = 8, ///< four times half the width, once half the height
    PointLike = KeepsAlpha | TakesTheRegion,
};

struct Operation {
    const char *name; ///< and of the file
    int traits;
    bool (*run)(EffectEngine &engine, bool limitToRegion);
};

/// A soft green rim around a transparent middle.
QImage rim(int width, int height) {
    QImage frame(width, height, QImage::Format_ARGB32);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const int near = std::min({x, y, width - 1 - x, height - 1 - y});
            frame.setPixel(x, y, qRgba(52, 178, 123, std::clamp(255 - 20 * near, 0, 255)));
        }
    }
    return frame;
}

/// With the values that a click applies.
const Operation operations[] = {
    {"black-and-white", PointLike, [](EffectEngine &e, bool r) { return e.blackAndWhite(127, r); }},
    {"greyscale", PointLike, [](EffectEngine &e, bool r) { return e.greyscale(0, r); }},
    {"sepia", PointLike, [](EffectEngine &e, bool r) { return e.sepia(r); }},
    {"invert", PointLike, [](EffectEngine &e, bool r) { return e.invert(true, true, true, r); }},
    {"solarise", PointLike, [](EffectEngine &e, bool r) { return e.solarise(180, 180, 180, true, r); }},
    {"colourise", PointLike, [](EffectEngine &e, bool r) { return e.colourise(255, 0, 0, r); }},
    {"brightness", PointLike, [](EffectEngine &e, bool r) { return e.brightness(r, 50); }},
    {"contrast", PointLike, [](EffectEngine &e, bool r) { return e.contrast(r, 50); }},
    {"saturation", PointLike, [](EffectEngine &e, bool r) { return e.saturation(r, 50); }},
    {"high-pass-sharpen", PointLike, [](EffectEngine &e, bool r) { return e.highPassSharpen(0, r); }},
    {"sharpen", PointLike, [](EffectEngine &e, bool r) { return e.sharpen(r); }},
    {"mosaic", TakesTheRegion, [](EffectEngine &e, bool r) { return e.mosaic(10, 10, r); }},
    {"oil-painting", TakesTheRegion, [](EffectEngine &e, bool r) { return e.oilPainting(6, r); }},
    {"blur", TakesTheRegion, [](EffectEngine &e, bool r) { return e.blur(6, r); }},
    {"texture", PointLike,
     [](EffectEngine &e, bool r) {
         e.setTexture(photoLike(37, 23));
         return e.texture(0, 0, r);
     }},
    {"tile", KeepsAlpha,
     [](EffectEngine &e, bool) { return e.tile(e.picture().width() / 5, e.picture().height() / 5); }},
    {"colour-emboss", PointLike, [](EffectEngine &e, bool r) { return e.colourEmboss(1, r); }},
    {"tracing", PointLike,
     [](EffectEngine &e, bool r) {
         return e.convolve({1, 1, 1, 1, -7, 1, 1, 1, 1}, 0, r);
     }},
    {"perspective", Plain, [](EffectEngine &e, bool) { return e.perspective(-30, 255, 255, 255); }},
    {"reflection-table", Plain, [](EffectEngine &e, bool) { return e.reflection(1); }},
    {"reflection-water", Plain, [](EffectEngine &e, bool) { return e.reflection(2); }},
    {"reflection-beside", Plain, [](EffectEngine &e, bool) { return e.reflection(3); }},
    {"reflection-four-ways", Plain, [](EffectEngine &e, bool) { return e.reflection(4); }},
    {"colour-focus", PointLike, [](EffectEngine &e, bool r) { return e.colourFocus(200, 90, 40, 20, r); }},
    {"frame-overlay", TakesTheRegion,
     [](EffectEngine &e, bool r) {
         e.setOverlay(rim(48, 32));
         return e.frameOverlay(r);
     }},
    {"quarter-turn-left", SwapsSides, [](EffectEngine &e, bool) { return e.quarterTurn(false); }},
    {"quarter-turn-right", SwapsSides, [](EffectEngine &e, bool) { return e.quarterTurn(true); }},
    {"flip", Plain, [](EffectEngine &e, bool) { return e.flip(); }},
    {"pop-art-row", MakesARow,
     [](EffectEngine &e, bool) {
         return e.popArtRow({{{0x2A1A8A, 0xFFD91A}, {0xC8104F, 0x7FE9E0}, {0x00695F, 0xFF9EC4}, {0x7A1FD0, 0xFF9D1E}}});
     }},
};

QSize resultSize(const Operation &operation, QSize size) {
    return (operation.traits & SwapsSides) != 0  ? size.transposed()
           : (operation.traits & MakesARow) != 0 ? QSize((size.width() + 1) / 2 * 4, (size.height() + 1) / 2)
                                                 : size;
}

QImage alphaOf(const QImage &picture) {
    return picture.convertToFormat(QImage::Format_ARGB32).convertToFormat(QImage::Format_Alpha8);
}

TEST(EffectTable, sizeFormatSourceAndTransparencyAreKept) {
    for (const Operation &operation : operations) {
        for (const QSize size : {QSize(1, 1), QSize(1, 5000), QSize(5000, 1), QSize(4, 3), QSize(310, 170)}) {
            for (const bool transparent : {false, true}) {
                SCOPED_TRACE(testing::Message() << operation.name << ' ' << size.width() << " x " << size.height()
                                                << (transparent ? " transparent" : ""));
                const QImage picture = photoLike(size.width(), size.height(), transparent);
                const QImage before = picture.copy();
                EffectEngine engine;
                engine.setPicture(picture);
                ASSERT_TRUE(operation.run(engine, false));
                EXPECT_EQ(engine.picture().size(), resultSize(operation, size));
                EXPECT_EQ(engine.picture().format(), picture.format());
                EXPECT_EQ(firstDifference(picture, before), QPoint(-1, -1)) << "wrote to its source";
                if ((!transparent && resultSize(operation, size) == size) || (operation.traits & KeepsAlpha) != 0) {
                    EXPECT_EQ(alphaOf(engine.picture()), alphaOf(picture));
                }
            }
        }
    }
}

TEST(EffectTable, whatMayBeLimitedIsAndTheRestIgnoresTheRegion) {
    struct Shape {
        const char *name;
        void (*set)(EffectEngine &engine);
        Region region;
    };
    // A bow tie that goes off the picture, as hands draw them.
    static const std::vector<PicturePoint> line{{20, 10}, {110.5, 80}, {140, 4}, {25, 71.25}, {60, 95}};
    const Shape shapes[] = {
        {"rectangle", [](EffectEngine &e) { e.setRectangularRegion(31, 22, 88, 67); },
         Region::rectangle(120, 90, 31, 22, 88, 67)},
        {"ellipse", [](EffectEngine &e) { e.setEllipticalRegion(31, 22, 88, 67); },
         Region::ellipse(120, 90, 31, 22, 88, 67)},
        {"lasso", [](EffectEngine &e) { e.setLassoRegion(line); }, Region::lasso(120, 90, line)},
        {"beside",
         [](EffectEngine &e) {
             e.setLassoRegion({{200, 0}, {300, 0}, {250, 80}});
         },
         Region()},
    };
    const QImage picture = photoLike(120, 90);
    for (const Operation &operation : operations) {
        for (const Shape &shape : shapes) {
            EffectEngine whole;
            whole.setPicture(picture);
            EffectEngine limited;
            limited.setPicture(picture);
            shape.set(limited);
            ASSERT_TRUE(operation.run(whole, true) && operation.run(limited, true));
            QImage expected = whole.picture().copy();
            for (int i = 0; i < 120 * 90 && (operation.traits & TakesTheRegion) != 0; ++i) {
                if (!shape.region.contains(i % 120, i / 120)) {
                    expected.setPixel(i % 120, i / 120, picture.pixel(i % 120, i / 120));
                }
            }
            EXPECT_EQ(firstDifference(limited.picture(), expected), QPoint(-1, -1)) << operation.name << shape.name;
        }
    }
}

/// The pictures in tests/imaging/golden. After a change that is meant, run with LUMORA_WRITE_GOLDEN=1 and look at each
/// before it is stored.
TEST(EffectTable, everyOperationLooksAsWhenSomebodyLooked) {
    const QDir folder(qEnvironmentVariable("LUMORA_SOURCE") + "/tests/imaging/golden");
    const QImage picture = photoLike(192, 128);
    for (const Operation &operation : operations) {
        EffectEngine engine;
        engine.setPicture(picture);
        ASSERT_TRUE(operation.run(engine, false)) << operation.name;
        const QString file = folder.filePath(QString::fromLatin1(operation.name) + ".png");
        if (qEnvironmentVariableIsSet("LUMORA_WRITE_GOLDEN")) {
            ASSERT_TRUE(engine.picture().save(file));
        }
        EXPECT_EQ(firstDifference(toPicture(QImage(file)), engine.picture()), QPoint(-1, -1)) << operation.name;
    }
}

} // namespace
} // namespace lumora
