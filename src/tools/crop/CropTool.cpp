#include "tools/crop/CropTool.h"

#include "imaging/transforms/Transform.h"
#include "session/AppContext.h"
#include "tools/canvas/CanvasMouse.h"
#include "tools/canvas/KeyboardPointer.h"
#include "tools/crop/CropPanel.h"
#include "tools/crop/CropShape.h"
#include "tools/crop/CropTip.h"
#include "widgets/PictureButton.h"

#include <QKeyEvent>
#include <algorithm>
#include <cmath>

namespace lumora {

namespace {

constexpr int ready = 5;                // image of picTarget
constexpr QPoint startCorner(100, 100); // picture pixels
constexpr int clickSlop = 3;            // pixels of the view that an unsteady hand may move within a click
constexpr int longStep = 10;            // picture pixels

/// To the nearest, halves to even; a frame has at least one pixel.
int halfOf(int side) {
    return std::max(1, static_cast<int>(std::nearbyint(side / 2.0)));
}

Qt::CursorShape cursorOf(CropGrip grip) {
    const bool across = grip.edges.testAnyFlags(Qt::LeftEdge | Qt::RightEdge);
    const bool down = grip.edges.testAnyFlags(Qt::TopEdge | Qt::BottomEdge);
    if (across && down) {
        return grip.edges.testFlag(Qt::LeftEdge) == grip.edges.testFlag(Qt::TopEdge) ? Qt::SizeFDiagCursor
                                                                                     : Qt::SizeBDiagCursor;
    }
    return across ? Qt::SizeHorCursor : down ? Qt::SizeVerCursor : Qt::SizeAllCursor;
}

} // namespace

CropTool::CropTool(AppContext &ctx, PhotoView &view, CanvasMouse &mouse, QWidget *window)
    : PanelTool(mouse, CropPanel::of(window, ctx), window), m_ctx(ctx), m_view(view),
      m_panel(static_cast<CropPanel *>(panel())) {
    connect(m_panel->cmdCropNow(), &QAbstractButton::clicked, this, &CropTool::CropPhoto);
    connect(m_panel, &CropPanel::shapeChosen, this, &CropTool::takeShape);
    connect(m_panel, &CropPanel::wholePhotoChosen, this, [this] {
        setFrame(m_ctx.photo.picCanvas().rect());
        finishFrame();
    });
    connect(&ctx.photo, &PhotoDocument::changed, this, [this](PhotoChanges what) {
        if (isAtWork() && what.testAnyFlags(PhotoChange::Size | PhotoChange::Loaded)) {
            startFrame(); // the frame was made for another picture
        }
    });
    connect(&view, &PhotoView::visiblePartChanged, this, [this] {
        if (isAtWork()) {
            m_view.viewport()->update(); // the size label stays in view when the photo scrolls
        }
    });
}

bool CropTool::open(const QString &) {
    if (!m_ctx.photo.PhotoLoaded() || m_ctx.photo.picCanvas().isNull()) {
        return false;
    }
    m_mouse.setTool(nullptr); // whichever of the two tools uses the panel
    m_panel->prepare(CropPanel::Use::Crop);
    begin();
    m_ctx.flags.endSelection();
    m_mouse.clearMarked();
    m_mouse.showTarget(ready);
    startFrame();
    m_view.setFocus(); // for the keys
    Q_EMIT hint(m_ctx.texts.text("CropHint"), HintedAct::Drag);
    return true;
}

void CropTool::end() {
    m_drag.reset();
    m_mouse.clearMarked();
    PanelTool::end();
}

void CropTool::startFrame() {
    const QSize photo = m_ctx.photo.picCanvas().size();
    m_drag.reset();
    m_cropReady = false;
    m_cropRect = QRect(0, 0, 0, 0);
    m_panel->cmdCropNow()->setEnabled(false); // until the frame is touched
    m_panel->chooseFreeFrame();
    setFrame(QRect(startCorner, QSize(halfOf(photo.width()), halfOf(photo.height()))));
}

void CropTool::setFrame(const QRect &frame) {
    m_frame = frame;
    m_view.viewport()->update();
}

void CropTool::takeShape() {
    setFrame(cropFrameOfShape(m_frame, m_panel->sides(), m_ctx.photo.picCanvas().size()));
    finishFrame();
}

void CropTool::moveFrame(const QRect &before, CropGrip grip, QPoint by) {
    const QSize photo = m_ctx.photo.picCanvas().size();
    const QRect dragged = draggedCropFrame(before, grip, by, photo);
    const QSize sides = m_panel->sides();
    setFrame(sides.isEmpty() ? dragged : shapedCropFrame(before, dragged, grip, sides, photo));
}

void CropTool::finishFrame() {
    m_cropRect = m_frame;
    m_panel->cmdCropNow()->setEnabled(true);
    if (!m_cropReady) {
        m_cropReady = true;
        m_panel->picTip2()->showSoonAt(m_panel->cmdCropNow());
    }
}

void CropTool::CropPhoto() {
    if (!isAtWork()) {
        return;
    }
    m_view.setFocus(); // keyboard focus for the next keys, in either case
    if (!m_cropReady) {
        Q_EMIT message(m_ctx.texts.text("CropMoveFirst"), false);
        return;
    }
    const QImage photo = m_ctx.photo.picCanvas();
    const QRect part = m_cropRect.intersected(photo.rect());
    if (part.isEmpty()) {
        Q_EMIT message(m_ctx.texts.text("CropBesidePhoto", "Drag the frame onto your photo first."), false);
        return;
    }
    QImage next;
    const PixelRect kept{part.left(), part.top(), part.left() + part.width(), part.top() + part.height()};
    if (!m_ctx.tasks.run([&] { next = cropped(photo, kept); }, Stopping::Offered)) {
        return;
    }
    if (!m_ctx.photo.changePhoto(next)) {
        Q_EMIT message(m_ctx.texts.text("StatusNoMemory"), false);
        return;
    }
    leave();
    m_cropReady = false;
    m_ctx.photo.ResizePicCanvas();
}

// --- Mouse ----------------------------------------------------------------------------------------------------------

QRectF CropTool::inView(const QRect &picture) const {
    return {m_view.toView(picture.topLeft()),
            m_view.toView(picture.topLeft() + QPoint(picture.width(), picture.height()))};
}

void CropTool::showCursor(CropGrip grip) {
    if (grip.isNothing()) {
        m_mouse.showTarget(ready);
    } else {
        m_view.setToolCursor(cursorOf(grip));
    }
}

void CropTool::press(const PointerEvent &at) {
    if (!isAtWork()) {
        return;
    }
    m_panel->picTip2()->dismiss();
    m_drag = Drag{.grip = cropGripAt(at.view, inView(m_frame)), .frame = m_frame, .pressed = at};
    if (m_drag->grip.isNothing()) { // outside the frame: starts a new one
        m_drag->grip.edges = Qt::RightEdge | Qt::BottomEdge;
        m_drag->frame = QRect(CanvasMouse::rounded(at.picture), QSize(0, 0));
    }
    showCursor(m_drag->grip);
}

void CropTool::move(const PointerEvent &at) {
    if (!isAtWork()) {
        return;
    }
    if (!m_drag) {
        showCursor(cropGripAt(at.view, inView(m_frame)));
        return;
    }
    showCursor(m_drag->grip);
    m_drag->moved = m_drag->moved || (at.view - m_drag->pressed.view).manhattanLength() >= clickSlop;
    if (m_drag->moved) {
        const QPoint by = CanvasMouse::rounded(at.picture - m_drag->pressed.picture);
        moveFrame(m_drag->frame, m_drag->grip, by);
    }
}

void CropTool::release(const PointerEvent &) {
    if (m_drag) {
        m_drag.reset();
        finishFrame();
        m_view.viewport()->update();
    }
}

// --- Keys -----------------------------------------------------------------------------------------------------------

bool CropTool::wantsKey(const QKeyEvent &key) const {
    const Qt::KeyboardModifiers held = key.modifiers() & ~Qt::KeypadModifier;
    if (!arrowStep(key.key()).isNull()) {
        return isAtWork() && !(held & ~(Qt::ShiftModifier | Qt::ControlModifier));
    }
    const bool used = key.key() == Qt::Key_Escape || key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
    return isAtWork() && used && held == Qt::NoModifier;
}

void CropTool::keyPress(const QKeyEvent &key) {
    const QPoint step = arrowStep(key.key());
    if (key.key() == Qt::Key_Escape) {
        leave();
    } else if (m_drag) {
        return; // the mouse has it
    } else if (step.isNull()) {
        CropPhoto();
    } else {
        CropGrip grip{.inside = !(key.modifiers() & Qt::ControlModifier), .edges = {}};
        if (!grip.inside) {
            grip.edges = step.x() != 0 ? Qt::RightEdge : Qt::BottomEdge;
        }
        const int length = key.modifiers() & Qt::ShiftModifier ? longStep : 1;
        moveFrame(m_frame, grip, step * length);
        finishFrame();
    }
}

void CropTool::paint(QPainter &painter) {
    if (isAtWork()) {
        const QString size = m_ctx.texts.text("CropSize", "%1 x %2 pixels").arg(m_frame.width()).arg(m_frame.height());
        paintCropFrame(painter, inView(m_frame), m_view.photoRect(), m_view.viewport()->rect(), size,
                       m_drag && m_drag->moved);
    }
}

} // namespace lumora
