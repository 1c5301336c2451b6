// What holds for every operation, and one stored picture of each that somebody has looked at.
#include "imaging/AllOperations.h"
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
    KeepsAlpha = 1, ///< each pixel its own
    SwapsSides = 2,
    MakesARow = 4, ///< four times half the width, once half the height
};

struct Row {
    const char *name; ///< and of the file
    int traits;
    Operation operation;
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
const std::vector<Row> &rows() {
    static const std::vector<Row> all = {
        {"black-and-white", KeepsAlpha, {applyBlackAndWhite, {127}}},
        {"greyscale", KeepsAlpha, {applyGreyscale, {}}},
        {"sepia", KeepsAlpha, {applySepia, {}}},
        {"invert", KeepsAlpha, {applyInvert, {true, true, true}}},
        {"solarise", KeepsAlpha, {applySolarise, {180, 180, 180, true}}},
        {"colourise", KeepsAlpha, {applyColourise, {255, 0, 0}}},
        {"brightness", KeepsAlpha, {applyBrightness, {50}}},
        {"contrast", KeepsAlpha, {applyContrast, {50}}},
        {"saturation", KeepsAlpha, {applySaturation, {50}}},
        {"enhance", KeepsAlpha, {applyEnhance, {50}}},
        {"high-pass-sharpen", KeepsAlpha, {applyHighPassSharpen, {0}}},
        {"sharpen", KeepsAlpha, {applySharpen, {}}},
        {"mosaic", Plain, {applyMosaic, {10, 10}}},
        {"oil-painting", Plain, {applyOilPainting, {6}}},
        {"blur", Plain, {applyBlur, {6}}},
        {"texture", KeepsAlpha, {applyTexture, {1, 0}}},
        {"tile", KeepsAlpha, {applyTile, {5, 5}}},
        {"colour-emboss", KeepsAlpha, {applyColourEmboss, {1}}},
        {"tracing", KeepsAlpha, {applyConvolution, {{1, 1, 1, 1, -7, 1, 1, 1, 1}}}},
        {"perspective", Plain, {applyPerspective, {-30, 255, 255, 255}}},
        {"reflection-table", Plain, {applyReflection, {1}}},
        {"reflection-water", Plain, {applyReflection, {2}}},
        {"reflection-beside", Plain, {applyReflection, {3}}},
        {"reflection-four-ways", Plain, {applyReflection, {4}}},
        {"colour-focus", KeepsAlpha, {applyColourFocus, {200, 90, 40, 20}}},
        {"frame-overlay", Plain, {framed, rim(48, 32)}},
        {"quarter-turn-left", SwapsSides, quarterTurnedAnticlockwise},
        {"quarter-turn-right", SwapsSides, quarterTurnedClockwise},
        {"flip", Plain, flippedVertically},
        {"pop-art-row",
         MakesARow,
         {popArtRow, {{{0x2A1A8A, 0xFFD91A}, {0xC8104F, 0x7FE9E0}, {0x00695F, 0xFF9EC4}, {0x7A1FD0, 0xFF9D1E}}}}},
    };
    return all;
}

QSize resultSize(const Row &row, QSize size) {
    return (row.traits & SwapsSides) != 0  ? size.transposed()
           : (row.traits & MakesARow) != 0 ? QSize((size.width() + 1) / 2 * 4, (size.height() + 1) / 2)
                                           : size;
}

QImage alphaOf(const QImage &picture) {
    return picture.convertToFormat(QImage::Format_ARGB32).convertToFormat(QImage::Format_Alpha8);
}

TEST(EffectTable, sizeFormatSourceAndTransparencyAreKept) {
    for (const Row &row : rows()) {
        for (const QSize size : {QSize(1, 1), QSize(1, 5000), QSize(5000, 1), QSize(4, 3), QSize(310, 170)}) {
            for (const bool transparent : {false, true}) {
                SCOPED_TRACE(testing::Message() << row.name << ' ' << size.width() << " x " << size.height()
                                                << (transparent ? " transparent" : ""));
                const QImage picture = photoLike(size.width(), size.height(), transparent);
                const QImage before = picture.copy();
                EffectEngine engine;
                engine.setPicture(picture);
                ASSERT_TRUE(engine.apply(row.operation, false));
                EXPECT_EQ(engine.picture().size(), resultSize(row, size));
                EXPECT_EQ(engine.picture().format(), picture.format());
                EXPECT_EQ(firstDifference(picture, before), QPoint(-1, -1)) << "wrote to its source";
                if ((!transparent && resultSize(row, size) == size) || (row.traits & KeepsAlpha) != 0) {
                    EXPECT_EQ(alphaOf(engine.picture()), alphaOf(picture));
                }
            }
        }
    }
}

TEST(EffectTable, eachKeepsToTheRegionOrIsRefusedWhereItChangesTheSides) {
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
    for (const Row &row : rows()) {
        for (const Shape &shape : shapes) {
            EffectEngine whole;
            whole.setPicture(picture);
            EffectEngine limited;
            limited.setPicture(picture);
            shape.set(limited);
            ASSERT_TRUE(whole.apply(row.operation, true)) << "no region is set";
            const bool keepsSides = resultSize(row, picture.size()) == picture.size();
            // Where the region holds nothing there is nothing to refuse either.
            ASSERT_EQ(limited.apply(row.operation, true), keepsSides || shape.region.isEmpty()) << row.name;
            QImage expected = keepsSides ? whole.picture().copy() : picture.copy();
            for (int i = 0; i < 120 * 90 && keepsSides; ++i) {
                if (!shape.region.contains(i % 120, i / 120)) {
                    expected.setPixel(i % 120, i / 120, picture.pixel(i % 120, i / 120));
                }
            }
            EXPECT_EQ(firstDifference(limited.picture(), expected), QPoint(-1, -1)) << row.name << shape.name;
        }
    }
}

/// The pictures in tests/imaging/golden. After a change that is meant, run with LUMORA_WRITE_GOLDEN=1 and look at each
/// before it is stored.
TEST(EffectTable, everyOperationLooksAsWhenSomebodyLooked) {
    const QDir folder(qEnvironmentVariable("LUMORA_SOURCE") + "/tests/imaging/golden");
    const QImage picture = photoLike(192, 128);
    for (const Row &row : rows()) {
        EffectEngine engine;
        engine.setPicture(picture);
        ASSERT_TRUE(engine.apply(row.operation, false)) << row.name;
        const QString file = folder.filePath(QString::fromLatin1(row.name) + ".png");
        if (qEnvironmentVariableIsSet("LUMORA_WRITE_GOLDEN")) {
            ASSERT_TRUE(engine.picture().save(file));
        }
        EXPECT_EQ(firstDifference(toPicture(QImage(file)), engine.picture()), QPoint(-1, -1)) << row.name;
    }
}

} // namespace
} // namespace lumora
