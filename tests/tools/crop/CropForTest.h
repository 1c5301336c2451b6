// A window with a photo and both tools of the crop panel, as the main window connects them, and helpers for the mouse.
#pragma once

#include "session/AppContext.h"
#include "support/TestPictures.h"
#include "tools/canvas/CanvasMouse.h"
#include "tools/canvas/TargetCursor.h"
#include "tools/crop/CropPanel.h"
#include "tools/crop/CropTool.h"
#include "tools/cut-out/CutOutTool.h"
#include "tools/select/SelectionOutline.h"
#include "widgets/PictureButton.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <gtest/gtest.h>

namespace lumora::test {

struct CropWindow : testing::Test {
    CropWindow() {
        window.resize(900, 700);
        view.setGeometry(0, 0, 900, 520); // the panel leaves it free
        window.show();
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }
    void open(const QImage &picture, int zoom = 100) {
        ASSERT_EQ(photo.openPicture({picture, PictureError::None, {}}, PhotoDocument::OpenRoute::LoadPhoto),
                  PictureError::None);
        photo.setZoom(zoom);
        QCoreApplication::processEvents(); // scroll bars come and go with the next events
    }
    /// The view's point nearest to a point of the picture.
    QPoint at(QPoint picture) { return view.toView(picture).toPoint(); }
    /// With the left button down along these points of the picture.
    void draw(const std::vector<QPoint> &points) {
        QTest::mousePress(view.viewport(), Qt::LeftButton, {}, at(points.front()));
        for (const QPoint point : points) {
            QTest::mouseMove(view.viewport(), at(point));
        }
        QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, at(points.back()));
    }
    void key(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) { QTest::keyClick(&view, key, modifiers); }
    template <typename Control> Control *control(const char *name) {
        auto *found = window.findChild<Control *>(name);
        EXPECT_NE(found, nullptr) << name;
        return found;
    }
    void click(const char *button) { control<PictureButton>(button)->click(); }
    QImage seen() { return view.viewport()->grab().toImage(); }
    bool hasTarget(int image) { return view.viewport()->cursor() == targetCursor(image, view.devicePixelRatioF()); }

    /// Neither tool is open, and nothing of either is left.
    void expectClosed() {
        EXPECT_FALSE(panel.isOpen());
        EXPECT_TRUE(panel.isHidden());
        EXPECT_FALSE(ctx.flags.SelectionActive() || crop.excludesOthers() || cutOut.excludesOthers());
        EXPECT_EQ(mouse.tool(), nullptr);
        EXPECT_TRUE(photo.selection().isEmpty());
        EXPECT_EQ(view.viewport()->cursor().shape(), Qt::ArrowCursor);
    }

    QTemporaryDir folder;
    AppContext ctx{Installation{folder.path()}};
    PhotoDocument &photo = ctx.photo;
    QWidget window;
    PhotoView view{ctx.photo, &window};
    CanvasMouse mouse{ctx.photo, ctx.flags, view};
    SelectionOutline outline{ctx.photo, view};
    CropTool crop{ctx, view, mouse, &window};
    CutOutTool cutOut{ctx, view, mouse, outline, &window};
    CropPanel &panel = *CropPanel::of(&window, ctx);
    QSignalSpy arrow{&crop, &CropTool::finished};
    QSignalSpy cutOutArrow{&cutOut, &CutOutTool::finished};
    QSignalSpy cutOutTip{&cutOut, &CutOutTool::tipWanted};
    QSignalSpy said{&crop, &CropTool::message};
};

} // namespace lumora::test
