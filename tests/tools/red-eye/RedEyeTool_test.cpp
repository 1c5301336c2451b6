#include "tools/red-eye/RedEyeTool.h"

#include "tools/adjust/AdjustForTest.h"
#include "tools/canvas/CanvasForTest.h"
#include "tools/canvas/TargetCursor.h"
#include "tools/red-eye/RedEyeCircle.h"

#include <QLabel>
#include <QPainter>
#include <cmath>

namespace lumora {
namespace {

struct RedEyeToolTest : test::ColourTools {
    /// The reference implementation, pixel by pixel.
    QImage fixed(const QImage &picture, QPoint at, int radius) const {
        QImage result = picture.copy();
        for (int dy = -radius; dy <= radius; ++dy) {
            for (int dx = -radius; dx <= radius; ++dx) {
                const QPoint pixel = at + QPoint(dx, dy);
                if (std::sqrt(dx * dx + dy * dy) > radius || !picture.rect().contains(pixel)) {
                    continue;
                }
                const QRgb colour = picture.pixel(pixel);
                const int number = qRed(colour) + 256 * qGreen(colour) + 65536 * qBlue(colour);
                const int green = int(std::nearbyint(number / 256.0)) & 255;
                const int blue = int(std::nearbyint(number / 256.0 / 256.0)) & 255;
                const bool white = number == 0xFFFFFF; // both are said of the fix in so many words
                const int red = white ? 255 : (number == 255 ? 0 : std::max(green, blue));
                result.setPixel(pixel, qRgba(red, qGreen(colour), qBlue(colour), qAlpha(colour)));
            }
        }
        return result;
    }
    void size(int radius) { slide("sldRD", radius); }
    qreal ring() const { return view.viewport()->cursor().pixmap().deviceIndependentSize().width() / 2; }

    RedEyeTool tool{ctx, view, mouse, &window};
    QSignalSpy arrow{&tool, &RedEyeTool::finished};
};

TEST_F(RedEyeToolTest, AClickTakesRedOutOfTheDiscAsOneSmallStep) {
    for (const bool transparent : {false, true}) {
        const QImage picture = test::photoLike(320, 200, transparent);
        open(picture);
        ctx.photo.setPhotoModified(false);
        tool.open();
        const struct {
            int zoom, radius;
            QPoint pixel;
        } cases[] = {{100, 20, {160, 100}}, {100, 1, {7, 190}}, {200, 9, {120, 80}},
                     {50, 33, {100, 50}},   {100, 80, {3, 2}},  {100, 12, {-8, 60}}};
        for (const auto &[zoom, radius, pixel] : cases) {
            SCOPED_TRACE(testing::Message() << "zoom " << zoom << " radius " << radius);
            ctx.photo.setZoom(zoom);
            size(radius);
            const int steps = ctx.photo.history().undoSteps();
            const qint64 memory = ctx.photo.history().memoryBytes();
            click(viewAt(pixel.x(), pixel.y()));
            EXPECT_EQ(test::firstDifference(ctx.photo.picCanvas(), fixed(picture, pixel, radius)), QPoint(-1, -1));
            EXPECT_EQ(ctx.photo.history().undoSteps(), steps + 1);
            EXPECT_LE(ctx.photo.history().memoryBytes() - memory, 4 * (2 * radius + 1) * (2 * radius + 1));
            EXPECT_TRUE(ctx.photo.PhotoModified());
            ctx.photo.PerformUndo();
            EXPECT_TRUE(photoIs(picture));
        }
        tool.close();
    }
}

TEST_F(RedEyeToolTest, AShineOfAnotherColourIsDarkenedAloneOrTheUserIsTold) {
    QImage picture(400, 300, QImage::Format_RGB32); // a dark face with an eye of each colour
    picture.fill(QColor(90, 70, 60));
    const struct {
        const char *button;
        QColor colour;
        QPoint eye;
    } cases[] = {{"optEye2", {255, 160, 50}, {80, 100}},
                 {"optEye3", {255, 140, 165}, {160, 100}},
                 {"optEye4", {120, 240, 120}, {240, 100}},
                 {"optEye5", {240, 245, 250}, {320, 100}}};
    QPainter painter(&picture);
    painter.setPen(Qt::NoPen);
    for (const auto &[button, colour, eye] : cases) {
        painter.setBrush(colour);
        painter.drawEllipse(eye, 10, 10);
    }
    painter.end();
    open(picture);
    tool.open();
    size(16);
    QSignalSpy message(&tool, &RedEyeTool::message);
    QSignalSpy hint(&tool, &RedEyeTool::hint);
    for (const auto &[button, colour, eye] : cases) {
        SCOPED_TRACE(button);
        control<QAbstractButton>(button)->click();
        EXPECT_EQ(hint.takeLast().at(0), "Click on each shining eye.");
        click(viewAt(eye.x(), eye.y()));
        EXPECT_EQ(ctx.photo.history().undoSteps(), 1);
        EXPECT_LT(qGray(ctx.photo.picCanvas().pixel(eye)), 50);
        EXPECT_EQ(ctx.photo.picCanvas().pixel(eye + QPoint(13, 0)), picture.pixel(eye + QPoint(13, 0)));
        EXPECT_EQ(message.count(), 0);
        ctx.photo.PerformUndo();
        click(viewAt(200, 200)); // skin
        EXPECT_EQ(ctx.photo.history().undoSteps(), 0);
        EXPECT_TRUE(photoIs(picture));
        EXPECT_EQ(message.count(), 1);
        message.clear();
    }
    control<QAbstractButton>("optEye1")->click();
    EXPECT_EQ(hint.takeLast().at(0), "Click on each red eye.");
    click(viewAt(200, 200));
    EXPECT_TRUE(photoIs(fixed(picture, {200, 200}, 16)));
}

TEST_F(RedEyeToolTest, SomeClicksChangeNothing) {
    tool.open(); // no photo
    EXPECT_FALSE(tool.panel()->isOpen());
    EXPECT_FALSE(tool.RDMode());
    openPhoto();
    click(viewAt(100, 100)); // not yet
    tool.open();
    size(5);
    click(viewAt(100, 100), Qt::RightButton);
    click(viewAt(-30, 100)); // the disc does not reach the photo
    tool.close();
    click(viewAt(100, 100));
    EXPECT_TRUE(photoIs(photo));
    EXPECT_EQ(ctx.photo.history().undoSteps(), 0);
}

TEST_F(RedEyeToolTest, ThePointerIsARingOfTheDisc) {
    openPhoto();
    tool.open();
    const struct {
        int zoom, radius;
        double ring; ///< pixels of the view
    } cases[] = {{100, 20, 20.5}, {100, 50, 50.5}, {200, 25, 51}, {50, 30, 15.25}, {50, 1, 4}};
    for (const auto &[zoom, radius, wanted] : cases) {
        SCOPED_TRACE(testing::Message() << "zoom " << zoom << " radius " << radius);
        size(radius); // both take effect without a move of the mouse
        ctx.photo.setZoom(zoom);
        EXPECT_NEAR(ring(), wanted + 4, 1);
        EXPECT_EQ(view.viewport()->cursor().pixmap().devicePixelRatio(), view.devicePixelRatioF());
        moveTo(viewAt(60, 60));
        EXPECT_NEAR(ring(), wanted + 4, 1);
        QTest::mousePress(view.viewport(), Qt::LeftButton, {}, viewAt(60, 60));
        EXPECT_NEAR(ring(), wanted + 4, 1);
        QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, viewAt(60, 60));
        EXPECT_NEAR(ring(), wanted + 4, 1);
    }
    size(60);
    EXPECT_NEAR(ring(), 30.25 + 4, 1);
    tool.close();
    EXPECT_EQ(view.viewport()->cursor().shape(), Qt::ArrowCursor);
}

TEST_F(RedEyeToolTest, AlsoOnAScreenOfDoubleDensity) {
    if (view.devicePixelRatioF() == 1) {
        test::passesAtScale("RedEyeToolTest.*:ColourFocusToolTest.TheMagnifier*", "2");
    }
}

TEST_F(RedEyeToolTest, ARingTooLargeForAPointerIsDrawnOnThePhoto) {
    QImage grey(400, 300, QImage::Format_RGB32);
    grey.fill(QColor(120, 120, 120));
    open(grey);
    tool.open();
    ctx.photo.setZoom(300);
    size(60);
    moveTo(QPoint(190, 150));
    EXPECT_TRUE(view.viewport()->cursor() == targetCursor(3, view.devicePixelRatioF()));
    const auto darkAt = [this](int x) {
        const QImage now = seen();
        int darkest = 255;
        for (int near = x - 2; near <= x + 2; ++near) {
            darkest = std::min(darkest, qGray(pixelOf(now, {near, 150})));
        }
        return darkest < 80;
    };
    const int reach = 3 * 121 / 2; // 60.5 pixels of the photo
    EXPECT_TRUE(darkAt(190 - reach));
    EXPECT_TRUE(darkAt(190 + reach));
    moveTo(QPoint(200, 150));
    EXPECT_TRUE(darkAt(200 + reach));
    EXPECT_FALSE(darkAt(190 - reach));
    tool.close();
    EXPECT_FALSE(darkAt(200 + reach));
}

TEST_F(RedEyeToolTest, TheCircleInThePanelIsTwentyTwipsToThePixel) {
    openPhoto();
    tool.open();
    auto *picture = control<RedEyeCircle>("picRedEye");
    for (const int radius : {1, 30, 80}) {
        size(radius);
        EXPECT_DOUBLE_EQ(picture->circle().width(), radius * 20 / 15.0);
        EXPECT_EQ(picture->circle().center(), QRectF(picture->rect()).center());
        EXPECT_TRUE(QRectF(picture->rect()).contains(picture->circle()));
    }
    EXPECT_TRUE(tool.panel()->rect().contains(picture->geometry()));
}

TEST_F(RedEyeToolTest, StartingAndEveryWayToEndSetTheFlags) {
    openPhoto();
    const struct {
        const char *name;
        std::function<void()> way;
        int arrows;
    } cases[] = {{"close", [this] { tool.close(); }, 0},
                 {"exit button", [this] { press("cmdExitPnlRedEye"); }, 1},
                 {"Esc", [this] { QTest::keyClick(&view, Qt::Key_Escape); }, 1},
                 {"another tool", [this] { selection.open("keySqr"); }, 0},
                 {"the arrow", [this] { mouse.setTool(nullptr); }, 0}};
    for (const auto &[name, way, arrows] : cases) {
        SCOPED_TRACE(name);
        mark(1);
        tool.open();
        EXPECT_TRUE(tool.RDMode());
        EXPECT_TRUE(tool.panel()->isOpen());
        EXPECT_FALSE(ctx.photo.selection().isShown());
        EXPECT_FALSE(ctx.flags.SelectionActive());
        arrow.clear();
        way();
        EXPECT_EQ(arrow.count(), arrows);
        EXPECT_FALSE(tool.RDMode());
        EXPECT_FALSE(tool.panel()->isVisible());
        EXPECT_NE(mouse.tool(), &tool);
    }
    EXPECT_EQ(ctx.photo.history().undoSteps(), 0);
}

} // namespace
} // namespace lumora
