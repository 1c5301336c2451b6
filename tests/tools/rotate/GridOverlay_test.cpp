// The guide grid: the position of its lines in screen pixels, that they stay there, and which setting shows them.
#include "tools/rotate/GridOverlay.h"

#include "session/AppContext.h"
#include "tools/canvas/CanvasForTest.h"
#include "tools/rotate/RotateTool.h"

#include <QTemporaryDir>

using namespace lumora;

namespace {

struct Grid : test::Canvas {
    QImage seen() {
        QImage image = view.viewport()->grab().toImage().convertToFormat(QImage::Format_RGB32);
        image.setDevicePixelRatio(1);
        return image;
    }
    GridOverlay grid{view};
};

/// What a line shows on a pixel of the photo: its colour, through which the photo is seen.
bool isLine(QRgb seen, QRgb photo) {
    const auto mixed = [](int line, int below) { return (line * 110 + below * 145) / 255; };
    const auto near = [](int a, int b) { return std::abs(a - b) <= 2; };
    return near(qRed(seen), mixed(192, qRed(photo))) && near(qGreen(seen), mixed(192, qGreen(photo))) &&
           near(qBlue(seen), mixed(0, qBlue(photo)));
}

} // namespace

TEST_F(Grid, linesAreEightyPixelsApartAndStayWhenThePhotoScrolls) {
    open(test::photoLike(1100, 900));
    scrollTo(0, 0);
    const QImage plain = seen();
    grid.DrawGrid();
    for (const int scroll : {0, 37, 200}) {
        scrollTo(scroll, scroll);
        QCoreApplication::processEvents(); // the view scrolls its contents
        const QImage lines = seen();
        grid.HideGrid();
        const QImage below = seen();
        grid.DrawGrid();
        int wrong = 0;
        for (int y = 0; y < lines.height(); ++y) {
            for (int x = 0; x < lines.width(); ++x) {
                const bool onLine = x % 80 == 0 || y % 80 == 0;
                const QRgb pixel = lines.pixel(x, y);
                if (x % 80 == 0 && y % 80 == 0) {
                    continue; // two lines, one over the other
                }
                wrong += onLine ? !isLine(pixel, below.pixel(x, y)) : pixel != below.pixel(x, y);
            }
        }
        EXPECT_EQ(wrong, 0) << scroll;
    }
    grid.HideGrid();
    scrollTo(0, 0);
    EXPECT_EQ(seen(), plain);
}

TEST_F(Grid, countsTheScreensOwnPixels) {
    for (const char *scale : {"1.5", "2"}) {
        test::passesAtScale("Grid.linesLie*", scale);
    }
}

TEST_F(Grid, endsAfterTwelveThousandPixels) {
    view.resize(12300, 40);
    const QImage below = seen();
    grid.DrawGrid();
    const QImage lines = seen();
    EXPECT_TRUE(isLine(lines.pixel(12000, 20), below.pixel(12000, 20)));
    EXPECT_EQ(lines.pixel(12080, 20), below.pixel(12080, 20));
    EXPECT_TRUE(isLine(lines.pixel(12200, 0), below.pixel(12200, 0))); // the horizontal lines continue
}

TEST(GridSetting, showsTheGridInFreeRotationOnlyWhenItIsOne) {
    const struct {
        const char *setting;
        const char *key;
        bool shown;
    } rows[] = {{"1", "keyRotate4", true},
                {"0", "keyRotate4", false},
                {"", "keyRotate4", false},
                {"11", "keyRotate4", false},
                {"1", "keyRotate1", false}};
    for (const auto &row : rows) {
        QTemporaryDir folder;
        AppContext ctx{Installation{folder.path()}};
        PhotoView view(ctx.photo);
        CanvasMouse mouse(ctx.photo, ctx.flags, view);
        RotateTool rotate(ctx, view, mouse, nullptr, nullptr);
        ctx.photo.openPicture({.picture = test::photoLike(50, 40), .reason = {}}, PhotoDocument::OpenRoute::LoadPhoto);
        ctx.fields.txtGrid = settings::valueOf<Setting::Grid>(row.setting);
        rotate.open(row.key);
        EXPECT_EQ(rotate.grid().GridShown(), row.shown) << row.setting << " " << row.key;
        mouse.setTool(nullptr);
        EXPECT_FALSE(rotate.grid().GridShown());
    }
}
