// A canvas with everything that the main window connects to it, and helpers for the mouse.
#pragma once

#include "session/AppContext.h"
#include "support/TestPictures.h"
#include "tools/canvas/CanvasMouse.h"
#include "tools/canvas/TargetCursor.h"
#include "tools/select/SelectionOutline.h"
#include "tools/select/SelectionTool.h"

#include <QApplication>
#include <QProcess>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

namespace lumora::test {

struct Canvas : testing::Test {
    Canvas() {
        view.resize(400, 300);
        view.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&view));
    }
    void open(const QImage &picture, int zoom = 100) {
        ASSERT_EQ(photo.openPicture({picture, PictureError::None, {}}, PhotoDocument::OpenRoute::LoadPhoto),
                  PictureError::None);
        zoomTo(zoom);
    }
    void zoomTo(int percent) {
        photo.setZoom(percent);
        QCoreApplication::processEvents(); // scroll bars come and go with the next events
    }
    void scrollTo(int x, int y) {
        view.horizontalScrollBar()->setValue(x);
        view.verticalScrollBar()->setValue(y);
    }
    /// Scrolled to a part of the way, 0 to 1.
    void scrollAlong(double part) {
        scrollTo(int(view.horizontalScrollBar()->maximum() * part), int(view.verticalScrollBar()->maximum() * part));
    }

    void press(QPoint where, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mousePress(view.viewport(), button, {}, where);
    }
    void move(QPoint where) { QTest::mouseMove(view.viewport(), where); }
    /// With the left button down and keys held.
    void move(QPoint where, Qt::KeyboardModifiers keys) {
        QMouseEvent event(QEvent::MouseMove, QPointF(where), QPointF(view.viewport()->mapToGlobal(where)), Qt::NoButton,
                          Qt::LeftButton, keys);
        QCoreApplication::sendEvent(view.viewport(), &event);
    }
    void release(QPoint where, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mouseRelease(view.viewport(), button, {}, where);
    }
    /// From one point of the view to another with a stop half-way.
    void drag(QPoint from, QPoint to, Qt::MouseButton button = Qt::LeftButton) {
        press(from, button);
        move((from + to) / 2);
        move(to);
        release(to, button);
    }
    /// The view's point nearest to a point of the picture.
    QPoint viewAt(double x, double y) { return view.toView({x, y}).toPoint(); }
    /// Which picture of picTarget the pointer is; 0 for another pointer.
    int target() {
        for (int image = 1; image <= 6; ++image) {
            if (view.viewport()->cursor() == targetCursor(image, view.devicePixelRatioF())) {
                return image;
            }
        }
        return 0;
    }

    QTemporaryDir folder;
    AppContext ctx{Installation{folder.path()}};
    ToolFlags &flags = ctx.flags;
    PhotoDocument &photo = ctx.photo;
    PhotoView view{photo};
    CanvasMouse mouse{photo, flags, view};
    SelectionOutline outline{photo, view};
    SelectionTool selection{ctx, mouse, outline};
};

/// Runs these tests of this program again on a screen with so many pixels to the point.
inline void passesAtScale(const char *tests, const char *scale) {
    QProcess again;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("QT_SCALE_FACTOR", scale);
    again.setProcessEnvironment(environment);
    again.setProcessChannelMode(QProcess::MergedChannels);
    again.start(QCoreApplication::applicationFilePath(), {QString("--gtest_filter=%1").arg(tests)});
    ASSERT_TRUE(again.waitForFinished(120'000));
    const QByteArray said = again.readAll();
    EXPECT_EQ(again.exitCode(), 0) << "scale " << scale << "\n" << said.constData();
    EXPECT_FALSE(said.contains("0 tests ran")) << tests;
}

} // namespace lumora::test
