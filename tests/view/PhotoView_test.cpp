// The view: where pixels are at any zoom and scroll position, what is painted, and what mouse and keys do.
#include "view/PhotoView.h"

#include "imaging/Picture.h"
#include "imaging/Scale.h"
#include "support/TestPictures.h"
#include "view/PictureSampling.h"

#include <QGuiApplication>
#include <QPainter>
#include <QScrollBar>
#include <QTest>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <memory>

using namespace lumora;
using test::firstDifference;
using test::nowhere;
using test::photoLike;

namespace {

struct View : testing::Test {
    View() {
        view.resize(400, 300);
        view.show();
        QObject::connect(&view, &PhotoView::pointer, [this](const PointerEvent &event) { heard.push_back(event); });
    }
    void open(const QImage &picture, int zoom = 100) {
        ASSERT_EQ(photo.openPicture({picture, PictureError::None, {}}, PhotoDocument::OpenRoute::LoadPhoto),
                  PictureError::None);
        photo.setZoom(zoom);
    }
    QImage painted() { return toPicture(view.viewport()->grab().toImage()); }
    QRect photoOnView() { return view.photoRect().toAlignedRect(); }
    void wheel(QPoint at, int delta, Qt::KeyboardModifiers modifiers) {
        QWheelEvent event(at, view.viewport()->mapToGlobal(at), {}, {0, delta}, Qt::NoButton, modifiers,
                          Qt::NoScrollPhase, false);
        QApplication::sendEvent(view.viewport(), &event);
    }

    PhotoDocument photo;
    PhotoView view{photo};
    std::vector<PointerEvent> heard;
};

double distance(QPointF a, QPointF b) {
    return std::hypot(a.x() - b.x(), a.y() - b.y());
}

} // namespace

TEST_F(View, convertsExactlyAtEveryZoomAndScrollPosition) {
    open(photoLike(700, 500));
    for (const int zoom : {1, 7, 30, 33, 50, 57, 99, 100, 101, 110, 233, 400, 1600, 12340}) {
        photo.setZoom(zoom);
        for (const double part : {0.0, 0.37, 1.0}) {
            QScrollBar *const across = view.horizontalScrollBar();
            QScrollBar *const down = view.verticalScrollBar();
            across->setValue(static_cast<int>(across->maximum() * part));
            down->setValue(static_cast<int>(down->maximum() * part));
            SCOPED_TRACE(testing::Message() << "zoom " << zoom << ", scrolled " << part);
            EXPECT_EQ(view.toView({0, 0}), view.photoRect().topLeft());
            EXPECT_LT(distance(view.toPicture(view.toView({123.25, 456.5})), {123.25, 456.5}), 1e-6);
            EXPECT_NEAR(view.toView({1, 0}).x() - view.toView({0, 0}).x(), zoom / 100.0, 1e-6);
            for (const QPoint pixel : {QPoint(0, 0), QPoint(699, 499), QPoint(350, 17), QPoint(-1, 500)}) {
                EXPECT_EQ(view.pixelAt(view.toView(QPointF(pixel) + QPointF(0.5, 0.5))), pixel);
            }
            const QRectF rect = view.photoRect();
            if (rect.width() < 400 && rect.height() < 300) { // centred
                EXPECT_LE(std::abs(rect.center().x() - 200), 0.5);
                EXPECT_LE(std::abs(rect.center().y() - 150), 0.5);
            }
        }
    }
}

TEST_F(View, scrollsToEveryCornerOfThePhoto) {
    open(photoLike(700, 500), 170);
    const QSize inner = view.viewport()->size();
    EXPECT_EQ(view.photoRect().topLeft().toPoint().x(), -view.horizontalScrollBar()->value());
    view.horizontalScrollBar()->setValue(view.horizontalScrollBar()->maximum());
    view.verticalScrollBar()->setValue(view.verticalScrollBar()->maximum());
    EXPECT_EQ(photoOnView().right() + 1, inner.width());
    EXPECT_EQ(photoOnView().bottom() + 1, inner.height());
    EXPECT_EQ(view.canvasSize(), QSize(400, 300)); // with or without scroll bars
}

TEST_F(View, keepsTheCentreOrThePointerWhereItIsWhenZooming) {
    open(photoLike(2000, 1600), 100);
    const auto middle = [this] { return view.toPicture(QRectF(view.viewport()->rect()).center()); };
    const QPointF before = middle();
    photo.PerformZoomIn();
    EXPECT_LT(distance(middle(), before), 1.0);
    photo.setZoom(350);
    EXPECT_LT(distance(middle(), before), 1.0);

    const QPoint at(310, 40);
    for (const int notch : {120, 120, -120, -120, -120}) {
        const QPointF under = view.toPicture(at);
        const int zoom = photo.zoom();
        wheel(at, notch, Qt::ControlModifier);
        EXPECT_EQ(photo.zoom(), zoom + notch / 12);
        EXPECT_LT(distance(view.toPicture(at), under), 1.0);
    }
    wheel(at, 50, Qt::ControlModifier); // less than a notch
    EXPECT_EQ(photo.zoom(), 340);
    const QPointF under = view.toPicture(at);
    view.zoomAbout(at, 500);
    EXPECT_LT(distance(view.toPicture(at), under), 1.0);
}

TEST_F(View, paintsThePhotoPixelForPixel) {
    const QImage picture = photoLike(120, 90);
    open(picture);
    struct Row {
        int zoom;
        DrawingMode mode;
        QImage expected;
    };
    const Row rows[] = {
        {100, DrawingMode::Smooth, picture},
        {200, DrawingMode::Squares, picture.scaled(240, 180, Qt::IgnoreAspectRatio, Qt::FastTransformation)},
        {300, DrawingMode::Squares, picture.scaled(360, 270, Qt::IgnoreAspectRatio, Qt::FastTransformation)},
        {50, DrawingMode::Smooth, boxReduced(picture, 2)},
        {25, DrawingMode::Smooth, boxReduced(picture, 4).copy(0, 0, 30, 23)},
    };
    for (const Row &row : rows) {
        photo.setZoom(row.zoom);
        ASSERT_EQ(photo.drawingMode(), row.mode);
        const QImage part = painted().copy(photoOnView());
        ASSERT_EQ(part.size(), row.expected.size()) << row.zoom;
        EXPECT_EQ(firstDifference(part, row.expected), nowhere) << "zoom " << row.zoom;
    }
    photo.setZoom(200);
    photo.ResizePicCanvas(); // smooth from now on
    const QImage smooth = painted().copy(photoOnView());
    EXPECT_NE(firstDifference(smooth, rows[1].expected), nowhere);
}

TEST_F(View, paintsTheChangedPhotoAndNothingElseOverIt) {
    QImage red(80, 60, QImage::Format_RGB32);
    red.fill(qRgb(255, 0, 0));
    open(red);
    const QImage before = painted();
    const QRect where = photoOnView();
    EXPECT_EQ(before.pixel(where.topLeft()), qRgb(255, 0, 0));
    EXPECT_EQ(before.pixel(where.bottomRight()), qRgb(255, 0, 0));
    EXPECT_NE(before.pixel(where.left() - 1, where.top()), qRgb(255, 0, 0));
    EXPECT_NE(before.pixel(where.right() + 1, where.bottom()), qRgb(255, 0, 0));
    // The table: paper with grey lines, nothing darker, the same in every corner of a tile.
    EXPECT_EQ(before.pixel(8, 4), before.pixel(8 + 16, 4 + 16));
    QImage blue = red;
    blue.fill(qRgb(0, 0, 255));
    ASSERT_TRUE(photo.changePhoto(blue));
    EXPECT_EQ(painted().pixel(where.center()), qRgb(0, 0, 255));
    photo.setZoom(40);
    EXPECT_EQ(painted().pixel(where.center()), qRgb(0, 0, 255));
    photo.PerformUndo();
    EXPECT_EQ(painted().pixel(where.center()), qRgb(255, 0, 0));
}

TEST_F(View, showsChecksThroughTransparentPixels) {
    QImage picture(64, 64, QImage::Format_ARGB32);
    picture.fill(qRgba(255, 0, 0, 0));
    for (int y = 0; y < 64; ++y) {
        picture.setPixel(40, y, qRgba(255, 0, 0, 255));
    }
    for (const int zoom : {50, 100, 300}) {
        open(picture, zoom);
        const QRect where = photoOnView();
        const QImage part = painted().copy(where);
        std::set<QRgb> colours;
        for (int i = 0; i < where.width() / 2; ++i) {
            colours.insert(part.pixel(i, 1));
        }
        // No red bleeds in from transparent pixels.
        EXPECT_EQ(colours, (std::set<QRgb>{qRgb(255, 255, 255), qRgb(221, 221, 221)})) << zoom;
    }
}

TEST_F(View, paintsTheSameWhetherWholeOrInParts) {
    for (const bool transparent : {false, true}) {
        const QImage picture = photoLike(50, 40, transparent);
        for (const double scale : {0.5, 0.61, 0.97, 1.0, 1.1, 2.5, 7.0}) {
            for (const Sampling sampling : {Sampling::Nearest, Sampling::Bilinear}) {
                const QRect whole(0, 0, qRound(50 * scale), qRound(40 * scale));
                const QImage all = sampled(picture, scale, whole, sampling);
                for (const QRect part : {QRect(3, 5, 7, 9), QRect(whole.right() - 4, 0, 5, 1), QRect(0, 11, 20, 3)}) {
                    EXPECT_EQ(sampled(picture, scale, part, sampling), all.copy(part)) << scale;
                }
            }
        }
    }
    QImage flat(9, 9, QImage::Format_RGB32);
    flat.fill(qRgb(255, 128, 1));
    const QImage larger = sampled(flat, 3.7, {0, 0, 33, 33}, Sampling::Bilinear);
    EXPECT_EQ(larger.pixel(0, 0), qRgb(255, 128, 1));
    EXPECT_EQ(larger.pixel(16, 32), qRgb(255, 128, 1));
}

TEST_F(View, scrollsByWheelAndKeys) {
    open(photoLike(3000, 2000), 100);
    QScrollBar *const across = view.horizontalScrollBar();
    QScrollBar *const down = view.verticalScrollBar();
    const auto values = [&] { return QPoint(across->value(), down->value()); };
    const QPoint start = values();
    wheel({50, 50}, -120, Qt::NoModifier);
    EXPECT_GT(values().y(), start.y());
    EXPECT_EQ(values().x(), start.x());
    wheel({50, 50}, -120, Qt::ShiftModifier);
    EXPECT_GT(values().x(), start.x());
    const QPoint moved = values();
    QTest::keyClick(&view, Qt::Key_PageDown);
    EXPECT_EQ(values(), moved + QPoint(0, view.viewport()->height()));
    QTest::keyClick(&view, Qt::Key_PageUp);
    QTest::keyClick(&view, Qt::Key_Right);
    QTest::keyClick(&view, Qt::Key_Down);
    EXPECT_GT(values().x(), moved.x());
    EXPECT_GT(values().y(), moved.y());
}

TEST_F(View, pansByMiddleButtonAndSpace) {
    open(photoLike(3000, 2000), 100);
    QWidget *const inside = view.viewport();
    for (const bool space : {false, true}) {
        const Qt::MouseButton button = space ? Qt::LeftButton : Qt::MiddleButton;
        if (space) {
            QTest::keyPress(&view, Qt::Key_Space);
            EXPECT_EQ(inside->cursor().shape(), Qt::OpenHandCursor);
        }
        const QPointF under = view.toPicture({200, 150});
        QTest::mousePress(inside, button, {}, {200, 150});
        EXPECT_EQ(inside->cursor().shape(), Qt::ClosedHandCursor);
        heard.clear();
        QTest::mouseMove(inside, {120, 171});
        QTest::mouseRelease(inside, button, {}, {120, 171});
        EXPECT_LT(distance(view.toPicture({120, 171}), under), 1e-9);
        EXPECT_TRUE(heard.empty());
        if (space) {
            QTest::keyRelease(&view, Qt::Key_Space);
        }
        EXPECT_EQ(inside->cursor().shape(), Qt::ArrowCursor);
    }
}

TEST_F(View, goesWithTwoFingersAndTellsToolsNothing) {
    open(photoLike(3000, 2000), 100);
    QPointingDevice *const screen = QTest::createTouchDevice();
    const auto fingers =
        std::make_unique<QTest::QTouchEventWidgetSequence>(QTest::touchEvent(view.viewport(), screen, false));
    const auto put = [&](int finger, QPoint at) { fingers->stationary(1 - finger).press(finger, at).commit(); };
    const QPointF between = view.toPicture({200, 150});
    fingers->press(0, {150, 150}).commit();
    put(1, {250, 150});
    heard.clear();
    const auto move = [&](int finger, QPoint to) { fingers->stationary(1 - finger).move(finger, to).commit(); };
    for (const auto &[left, right] : {std::pair(140, 260), std::pair(120, 280), std::pair(100, 300)}) {
        move(0, {left, 150}); // screens report one after the other
        move(1, {right, 150});
    }
    EXPECT_EQ(photo.zoom(), 200);
    EXPECT_LT(distance(view.toPicture({200, 150}), between), 12); // touches of the test are off by the window's frame
    const QPointF grown = view.toPicture({200, 150});
    fingers->move(0, {130, 100}).move(1, {330, 100}).commit();
    EXPECT_EQ(photo.zoom(), 200);
    EXPECT_LT(distance(view.toPicture({230, 100}), grown), 1);
    fingers->stationary(0).release(1, {330, 100}).commit();
    fingers->move(0, {50, 50}).commit();
    fingers->release(0, {50, 50}).commit();
    EXPECT_EQ(photo.zoom(), 200);
    EXPECT_TRUE(std::all_of(heard.begin(), heard.end(), [](const PointerEvent &event) {
        return event.kind == PointerEvent::Kind::Move && event.buttons == Qt::NoButton;
    }));

    heard.clear();
    fingers->press(0, {150, 150}).commit(); // the next one is a mouse again
    fingers->move(0, {180, 150}).commit();
    put(1, {250, 150}); // a hand that rests
    move(1, {350, 150});
    fingers->release(0, {180, 150}).release(1, {350, 150}).commit();
    EXPECT_EQ(photo.zoom(), 200);
    EXPECT_TRUE(std::any_of(heard.begin(), heard.end(),
                            [](const PointerEvent &event) { return event.kind == PointerEvent::Kind::Press; }));
    EXPECT_EQ(heard.back().kind, PointerEvent::Kind::Release);
}

TEST_F(View, tellsToolsOfThePointerInPicturePixels) {
    open(photoLike(100, 80), 200);
    QWidget *const inside = view.viewport();
    const QPoint at = view.toView({30, 20}).toPoint();
    QTest::mousePress(inside, Qt::LeftButton, Qt::ShiftModifier, at);
    QTest::mouseMove(inside, at + QPoint(10, 6));
    QTest::mouseRelease(inside, Qt::LeftButton, {}, at + QPoint(10, 6));
    ASSERT_EQ(heard.size(), 3u);
    EXPECT_EQ(heard[0].kind, PointerEvent::Kind::Press);
    EXPECT_EQ(heard[0].picture, QPointF(30, 20));
    EXPECT_EQ(heard[0].button, Qt::LeftButton);
    EXPECT_EQ(heard[0].modifiers, Qt::ShiftModifier);
    EXPECT_EQ(heard[1].kind, PointerEvent::Kind::Move);
    EXPECT_EQ(heard[1].buttons, Qt::LeftButton);
    EXPECT_EQ(heard[2].kind, PointerEvent::Kind::Release);
    EXPECT_EQ(heard[2].picture, QPointF(35, 23));
}

TEST_F(View, showsAPreviewJustAsThePhotoWouldLook) {
    const QImage before = photoLike(700, 500);
    const QImage after = before.mirrored(); // other pixels everywhere
    struct Row {
        int zoom;
        QRect part;
        int factor; // picture pixels to one of the preview
    };
    const Row rows[] = {
        {100, {0, 0, 700, 500}, 1}, {100, {100, 50, 200, 150}, 1}, {130, {120, 80, 64, 40}, 1},
        {230, {33, 41, 90, 70}, 1}, {400, {10, 12, 60, 50}, 1},    {50, {64, 32, 320, 224}, 2},
        {37, {0, 0, 700, 500}, 2},  {25, {128, 64, 320, 224}, 4},
    };
    for (const Row &row : rows) {
        for (const double along : {0.0, 0.37, 1.0}) {
            SCOPED_TRACE(testing::Message() << row.zoom << " % at " << along);
            open(before, row.zoom);
            QCoreApplication::processEvents(); // scroll bars come and go with the next events
            view.horizontalScrollBar()->setValue(int(view.horizontalScrollBar()->maximum() * along));
            view.verticalScrollBar()->setValue(int(view.verticalScrollBar()->maximum() * along));
            const QImage plain = painted();
            const QRect small(row.part.topLeft() / row.factor, row.part.size() / row.factor);
            view.showPreview((row.factor == 1 ? after : boxReduced(after, row.factor)).copy(small), row.part);
            const QImage shown = painted();
            view.clearPreview();
            EXPECT_EQ(painted(), plain);

            // What the photo looks like when it is changed; at the part's border pixels blend with their neighbours.
            const QRectF place(view.toView(row.part.topLeft()),
                               view.toView(row.part.topLeft() + QPoint(row.part.width(), row.part.height())));
            const QRect inside = place.toAlignedRect().adjusted(5, 5, -5, -5);
            const QRect around = place.toAlignedRect().adjusted(-1, -1, 1, 1);
            ASSERT_TRUE(photo.changePhoto(after));
            const QImage changed = painted();
            int wrongInside = 0;
            int wrongOutside = 0;
            for (int y = 0; y < shown.height(); ++y) {
                for (int x = 0; x < shown.width(); ++x) {
                    wrongInside += inside.contains(x, y) && shown.pixel(x, y) != changed.pixel(x, y) ? 1 : 0;
                    wrongOutside += !around.contains(x, y) && shown.pixel(x, y) != plain.pixel(x, y) ? 1 : 0;
                }
            }
            EXPECT_EQ(wrongInside, 0);
            EXPECT_EQ(wrongOutside, 0);
        }
    }
}

TEST_F(View, aPreviewStaysWithinThePhotoAndGoesWithIt) {
    QImage red(81, 61, QImage::Format_RGB32);
    red.fill(qRgb(255, 0, 0));
    QImage blue(11, 8, QImage::Format_RGB32);
    blue.fill(qRgb(0, 0, 255));
    open(red);
    const QImage plain = painted();
    const QRect where = photoOnView();
    const auto show = [&] { view.showPreview(blue, {0, 0, 88, 64}); }; // whole squares of 8 reach beyond the photo
    show();
    QImage expected = plain;
    QPainter(&expected).fillRect(where, qRgb(0, 0, 255));
    EXPECT_EQ(firstDifference(painted(), expected), nowhere);
    QImage halfClear(11, 8, QImage::Format_ARGB32);
    halfClear.fill(Qt::transparent);
    view.showPreview(halfClear, {0, 0, 88, 64}); // over checks, not over the photo
    EXPECT_NE(painted().pixel(where.center()), qRgb(255, 0, 0));
    for (const QRect &part : {QRect(-50, -50, 20, 20), QRect(200, 0, 5, 5), QRect(3, 3, 0, 0)}) {
        view.showPreview(blue, part);
        EXPECT_EQ(painted(), plain);
    }
    show();
    photo.setZoom(150); // the photo has not changed
    EXPECT_EQ(painted().pixel(photoOnView().center()), qRgb(0, 0, 255));
    photo.setZoom(100);
    ASSERT_TRUE(photo.changePhoto(red.copy()));
    EXPECT_EQ(painted(), plain);
    show();
    photo.PerformUndo();
    EXPECT_EQ(painted(), plain);
    show();
    open(red);
    EXPECT_EQ(painted(), plain);

    show();
    view.setPhotoHidden(true);
    EXPECT_NE(painted().pixel(where.center()), qRgb(0, 0, 255));
    EXPECT_NE(painted().pixel(where.center()), qRgb(255, 0, 0));
    EXPECT_EQ(painted().pixel(where.topLeft() - QPoint(1, 1)), painted().pixel(where.topLeft() + QPoint(15, 15)));
    view.setPhotoHidden(false);
    EXPECT_EQ(painted().pixel(where.center()), qRgb(0, 0, 255));
}

TEST_F(View, showsTheToolsPointerWhileNotPanning) {
    open(photoLike(3000, 2000));
    const auto shape = [this] { return view.viewport()->cursor().shape(); };
    view.setToolCursor(Qt::CrossCursor);
    EXPECT_EQ(shape(), Qt::CrossCursor);
    QTest::keyPress(&view, Qt::Key_Space);
    view.setToolCursor(Qt::IBeamCursor);
    EXPECT_EQ(shape(), Qt::OpenHandCursor);
    QTest::keyRelease(&view, Qt::Key_Space);
    EXPECT_EQ(shape(), Qt::IBeamCursor);
}

TEST_F(View, letsOverlaysPaintOnTop) {
    open(photoLike(100, 80), 200);
    QObject::connect(&view, &PhotoView::paintOverlay, [this](QPainter &painter) {
        painter.fillRect(QRectF(view.toView({10, 10}), view.toView({20, 20})), QColor(1, 2, 3));
    });
    EXPECT_EQ(painted().pixel(view.toView({15, 15}).toPoint()), qRgb(1, 2, 3));
}
