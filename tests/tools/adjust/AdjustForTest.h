// The canvas with the settings behind it, for the tools that change colours, and the ways to select a part of a photo.
#pragma once

#include "imaging/EffectEngine.h"
#include "session/AppContext.h"
#include "support/TestPictures.h"
#include "tools/canvas/CanvasMouse.h"
#include "tools/select/SelectionOutline.h"
#include "tools/select/SelectionTool.h"
#include "widgets/PictureButton.h"
#include "widgets/SlidingPanel.h"

#include <QSignalSpy>
#include <QSlider>
#include <QTemporaryDir>
#include <QTest>
#include <functional>
#include <gtest/gtest.h>

namespace lumora::test {

struct ColourTools : testing::Test {
    ColourTools() {
        window.setObjectName("frmMain");
        window.resize(1000, 700);
        view.setGeometry(0, 0, 400, 300); // reachable by the mouse at double density, and not covered by panels
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&window));
    }
    void open(const QImage &picture) {
        ASSERT_EQ(ctx.photo.openPicture({picture, PictureError::None, {}}, PhotoDocument::OpenRoute::LoadPhoto),
                  PictureError::None);
        QCoreApplication::processEvents();
    }
    void openPhoto() { open(photo); }
    /// Marks with the selection tool's flags: 1 rectangle, 2 ellipse, 3 lasso, 0 nothing.
    void mark(int kind) {
        const char *const keys[] = {"", "keySqr", "keyCircle", "keyLasso"};
        selection.open(keys[kind]);
        PhotoSelection marked;
        if (kind == 1) {
            marked.markRectangle({20, 10, 120, 80});
        } else if (kind == 2) {
            marked.markEllipse({20, 10, 120, 80});
        } else if (kind == 3) {
            marked.markLasso({{20, 10}, {250, 60}, {90, 190}});
        }
        ctx.photo.setSelection(marked);
    }
    /// The photo with those of its pixels changed that the mark of that kind holds.
    QImage expected(int kind, const Operation &operation) {
        EffectEngine engine;
        engine.setPicture(photo);
        EXPECT_TRUE(engine.apply(operation, false));
        const Region region = ctx.photo.selection().region(photo.size());
        QImage result = photo.copy();
        for (int y = 0; y < photo.height(); ++y) {
            for (int x = 0; x < photo.width(); ++x) {
                if (kind == 0 || region.contains(x, y)) {
                    result.setPixel(x, y, engine.picture().pixel(x, y));
                }
            }
        }
        return result;
    }
    bool photoIs(const QImage &picture) const {
        return firstDifference(ctx.photo.picCanvas(), picture) == QPoint(-1, -1);
    }
    template <typename Control> Control *control(const char *name) {
        auto *found = window.findChild<Control *>(name);
        EXPECT_NE(found, nullptr) << name;
        return found;
    }
    void press(const char *name) { control<PictureButton>(name)->click(); }
    void slide(const char *name, int value) { control<QSlider>(name)->setValue(value); }
    bool shown(const char *name) { return control<QWidget>(name)->isVisible(); }
    /// The view's picture at a point in its pixels.
    static QRgb pixelOf(const QImage &grabbed, QPoint at) { return grabbed.pixel(at * grabbed.devicePixelRatio()); }
    QImage seen() { return view.viewport()->grab().toImage(); }
    /// Whether the photo looks on the screen as that picture would, at 100 %.
    bool looksLike(const QImage &picture) {
        const QImage now = seen();
        // At the corners of pixels: on a screen of double density, too, they are not blended.
        const int step = 7;
        for (int y = 0; y < picture.height(); y += step) {
            for (int x = 0; x < picture.width(); x += step) {
                if (QColor(pixelOf(now, viewAt(x, y))) != QColor(picture.pixel(x, y))) {
                    return false;
                }
            }
        }
        return true;
    }
    bool comesToLookLike(const QImage &picture) {
        return QTest::qWaitFor([&] { return looksLike(picture); });
    }
    QPoint viewAt(double x, double y) { return view.toView({x, y}).toPoint(); }
    void moveTo(QPoint where) { QTest::mouseMove(view.viewport(), where); }
    void click(QPoint where, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mouseClick(view.viewport(), button, {}, where);
    }

    QTemporaryDir folder;
    AppContext ctx{Installation{folder.path()}};
    const QImage photo = photoLike(320, 200);
    QWidget window;
    PhotoView view{ctx.photo, &window};
    CanvasMouse mouse{ctx.photo, ctx.flags, view};
    SelectionOutline outline{ctx.photo, view};
    SelectionTool selection{ctx, mouse, outline};
};

} // namespace lumora::test
