// The marching outline: whole pixels of black and white along the selection, at every zoom, scroll position and device
// pixel ratio, and no unnecessary painting.
#include "tools/select/SelectionOutline.h"

#include "tools/canvas/CanvasForTest.h"
#include "tools/select/DashedLine.h"

#include <QPaintEvent>
#include <QPainter>
#include <cmath>

using namespace lumora;

namespace {

const QRgb black = qRgb(0, 0, 0);
const QRgb white = qRgb(255, 255, 255);

struct Outline : test::Canvas {
    Outline() {
        QImage green(600, 500, QImage::Format_RGB32);
        green.fill(qRgb(30, 160, 60));
        open(green);
        scrollTo(0, 0);
    }
    void mark(void (PhotoSelection::*shape)(const QRect &), const QRect &box) {
        PhotoSelection selected;
        (selected.*shape)(box);
        photo.setSelection(selected);
    }
    QImage painted() { return view.viewport()->grab().toImage().convertToFormat(QImage::Format_RGB32); }
    /// The pixels of the screen that the outline takes, found by comparing with the view without it.
    QImage outlinePixels() {
        const PhotoSelection selected = photo.selection();
        const QImage with = painted();
        photo.setSelection({});
        const QImage without = painted();
        photo.setSelection(selected);
        QImage mask(with.size(), QImage::Format_Grayscale8);
        mask.fill(0);
        int wrong = 0;
        for (int y = 0; y < with.height(); ++y) {
            for (int x = 0; x < with.width(); ++x) {
                const bool line = with.pixel(x, y) != without.pixel(x, y);
                wrong += line && with.pixel(x, y) != black && with.pixel(x, y) != white ? 1 : 0;
                mask.scanLine(y)[x] = line ? 255 : 0;
            }
        }
        EXPECT_EQ(wrong, 0) << "pixels are neither black nor white";
        return mask;
    }
    /// A point of the picture in the screen's pixels.
    QPointF device(double x, double y) { return view.toView({x, y}) * view.devicePixelRatioF(); }
};

/// Counts the pixels of the view that are painted.
struct PaintCounter : QObject {
    bool eventFilter(QObject *, QEvent *event) override {
        if (event->type() == QEvent::Paint) {
            for (const QRect &part : static_cast<QPaintEvent *>(event)->region()) {
                painted += part.width() * part.height();
            }
        }
        return false;
    }
    int painted = 0;
};

QImage drawnLine(QSize surface, QPointF offset, const std::vector<QPointF> &points, double devicePixels = 1) {
    DashedLine line;
    line.clear(surface, devicePixels);
    line.moveTo(points.front() + offset);
    for (const QPointF &point : points) {
        line.lineTo(point + offset);
    }
    QImage image(surface, QImage::Format_RGB32);
    image.fill(qRgb(9, 9, 9));
    image.setDevicePixelRatio(devicePixels);
    QPainter painter(&image);
    line.paint(painter, 3);
    painter.end();
    image.setDevicePixelRatio(1);
    return image;
}

} // namespace

TEST_F(Outline, isOnTheEdgesOfTheSelection) {
    const double thick = std::max(1, qRound(2 * view.devicePixelRatioF()));
    for (const int zoom : {25, 37, 100, 130, 250, 400}) {
        zoomTo(zoom);
        for (const double part : {0.0, 0.4, 1.0}) {
            scrollAlong(part);
            SCOPED_TRACE(testing::Message() << zoom << " % at " << part);
            const QRect box = view.visiblePart().adjusted(8, 8, -16, -11);
            mark(&PhotoSelection::markRectangle, box);
            const QRectF edge(device(box.x(), box.y()), device(box.x() + box.width(), box.y() + box.height()));
            const QImage line = outlinePixels();
            const auto far = [&](int x, int y) { // from the rectangle's edge, in the screen's pixels
                const double across = std::min(std::abs(x + 0.5 - edge.left()), std::abs(x + 0.5 - edge.right()));
                const double down = std::min(std::abs(y + 0.5 - edge.top()), std::abs(y + 0.5 - edge.bottom()));
                return edge.contains(QPointF(x + 0.5, y + 0.5)) ? std::min(across, down) : std::max(across, down);
            };
            int missing = 0;
            int stray = 0;
            for (int y = 0; y < line.height(); ++y) {
                for (int x = 0; x < line.width(); ++x) {
                    const bool within = edge.adjusted(-1, -1, 1, 1).contains(QPointF(x + 0.5, y + 0.5));
                    const bool on = line.constScanLine(y)[x] != 0;
                    missing += within && far(x, y) < thick / 2 - 0.51 && !on ? 1 : 0;
                    stray += on && edge.adjusted(thick, thick, -thick, -thick).contains(x, y) ? 1 : 0;
                    stray += on && !edge.adjusted(-thick, -thick, thick, thick).contains(x, y) ? 1 : 0;
                }
            }
            EXPECT_EQ(missing, 0);
            EXPECT_EQ(stray, 0);
        }
    }
}

TEST_F(Outline, goesRoundTheEllipse) {
    const double thick = std::max(1, qRound(2 * view.devicePixelRatioF()));
    for (const int zoom : {50, 100, 300}) {
        zoomTo(zoom);
        SCOPED_TRACE(zoom);
        const QRect box = view.visiblePart().adjusted(8, 8, -16, -11);
        mark(&PhotoSelection::markEllipse, box);
        const QImage line = outlinePixels();
        const QRectF edge(device(box.x(), box.y()), device(box.x() + box.width(), box.y() + box.height()));
        for (int degree = 0; degree < 360; ++degree) {
            const double angle = degree * M_PI / 180;
            const auto along = [&](double by) {
                const QPointF at = edge.center() + QPointF(std::cos(angle) * (edge.width() / 2 + by),
                                                           std::sin(angle) * (edge.height() / 2 + by));
                return qGray(line.pixel(int(std::floor(at.x())), int(std::floor(at.y())))) != 0;
            };
            EXPECT_TRUE(along(0) || along(-1) || along(1)) << degree;
            EXPECT_FALSE(along(2 * thick) || along(-2 * thick)) << degree;
        }
    }
}

TEST_F(Outline, isExactOnFinerScreensToo) {
    for (const char *scale : {"1.5", "2"}) {
        test::passesAtScale("Outline.liesOn*:Outline.goesRound*:Outline.movesWith*", scale);
    }
}

TEST_F(Outline, movesWithThePhotoPixelForPixel) {
    zoomTo(230);
    scrollTo(100, 100);
    selection.open("keyLasso");
    press({30, 30});
    for (int i = 0; i < 40; ++i) {
        move({200 + int(150 * std::cos(i * 0.9)), 140 + int(110 * std::sin(i * 0.7))});
    }
    for (const bool marked : {false, true}) { // while it is drawn, and closed
        if (marked) {
            release({200, 140});
        }
        scrollTo(100, 100);
        const QImage before = painted();
        scrollTo(100 + 37, 100 + 52);
        const QImage after = painted();
        const double devicePixels = view.devicePixelRatioF();
        const int x = qRound((100 + 37) * devicePixels) - qRound(100 * devicePixels);
        const int y = qRound((100 + 52) * devicePixels) - qRound(100 * devicePixels);
        const QSize both(before.width() - x, before.height() - y);
        EXPECT_EQ(after.copy(QRect(QPoint(), both)), before.copy(QRect(QPoint(x, y), both))) << marked;
        EXPECT_NE(after, before);
    }
}

TEST_F(Outline, isThereWhileSomethingIsMarkedAndShown) {
    const QImage plain = painted();
    mark(&PhotoSelection::markRectangle, {20, 20, 100, 100});
    EXPECT_NE(painted(), plain);
    PhotoSelection selected = photo.selection();
    selected.setVisible(false);
    photo.setSelection(selected);
    EXPECT_EQ(painted(), plain);
    mark(&PhotoSelection::markRectangle, {20, 20, 100, 100});
    mouse.clearMarked();
    EXPECT_EQ(painted(), plain);
    mark(&PhotoSelection::markEllipse, {20, 20, 100, 100});
    ASSERT_TRUE(photo.changePhoto(photo.picCanvas().scaled(300, 200)));
    photo.PerformUndo();
    EXPECT_TRUE(photo.selection().isEmpty());
    EXPECT_EQ(painted(), plain);
}

TEST_F(Outline, marches) {
    mark(&PhotoSelection::markRectangle, {20, 20, 100, 100});
    const QImage before = painted();
    ASSERT_TRUE(QTest::qWaitFor([&] { return painted() != before; }));
    const QImage after = painted();
    int turned = 0;
    for (int y = 0; y < before.height(); ++y) {
        for (int x = 0; x < before.width(); ++x) {
            if (before.pixel(x, y) != after.pixel(x, y)) {
                EXPECT_EQ((before.pixel(x, y) ^ after.pixel(x, y)) & 0xffffff, white & 0xffffff);
                ++turned;
            }
        }
    }
    EXPECT_GT(turned, 100);
}

TEST_F(Outline, repaintsOnlyWhatChanges) {
    PaintCounter counter;
    const auto settle = [&] {
        QCoreApplication::processEvents();
        counter.painted = 0;
    };
    view.viewport()->installEventFilter(&counter);
    selection.open("keyLasso");
    press({50, 50});
    for (int i = 0; i < 5000; ++i) {
        move({50 + i % 300, 50 + (i * 7) % 200});
    }
    settle();
    move({200, 150});
    settle();
    move({203, 152});
    view.viewport()->repaint(QRect(0, 0, 1, 1)); // brings what is due
    EXPECT_GT(counter.painted, 1);
    EXPECT_LT(counter.painted, 400);
    release({203, 152});

    mark(&PhotoSelection::markRectangle, {20, 20, 5, 5});
    settle();
    mark(&PhotoSelection::markRectangle, {20, 20, 6, 5}); // nothing far away is painted
    view.viewport()->repaint(QRect(0, 0, 1, 1));
    EXPECT_GT(counter.painted, 1);
    EXPECT_LT(counter.painted, 400 * 300 / 4);
}

TEST(DashedLine, isTheSameWhereverTheSurfaceEnds) {
    std::vector<QPointF> points;
    points.reserve(300);
    for (int i = 0; i < 300; ++i) {
        points.emplace_back(150 + 140.3 * std::cos(i * 1.7) + i * 0.11, 120 + 113.7 * std::sin(i * 2.3));
    }
    for (const double devicePixels : {1.0, 1.5, 2.0, 3.0}) {
        const QImage whole = drawnLine({400, 300}, {}, points, devicePixels);
        for (const QRect window : {QRect(130, 90, 100, 100), QRect(0, 0, 33, 300), QRect(200, 100, 1, 1)}) {
            EXPECT_EQ(drawnLine(window.size(), -QPointF(window.topLeft()), points, devicePixels), whole.copy(window))
                << devicePixels << " " << window.x();
        }
    }
}

TEST(DashedLine, drawsWhateverItIsGiven) {
    const QSize surface(50, 40);
    const QImage empty = drawnLine(surface, {}, {{-100, -100}, {-100, 500}});
    EXPECT_EQ(empty.pixel(25, 20), qRgb(9, 9, 9));
    const QImage across = drawnLine(surface, {}, {{-1e9, 20}, {1e9, 20}});
    for (int x = 0; x < 50; ++x) {
        EXPECT_TRUE(across.pixel(x, 20) == black || across.pixel(x, 20) == white);
        EXPECT_EQ(across.pixel(x, 25), qRgb(9, 9, 9));
    }
    EXPECT_EQ(drawnLine(surface, {}, {{25, 20}}).pixel(25, 20), white); // a point
    DashedLine none;
    none.clear({}, 1);
    none.moveTo({0, 0});
    EXPECT_TRUE(none.lineTo({5, 5}).isEmpty());
    EXPECT_TRUE(none.isEmpty());
}
