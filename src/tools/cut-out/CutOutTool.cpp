#include "tools/cut-out/CutOutTool.h"

#include "imaging/transforms/ClearRegion.h"
#include "session/AppContext.h"
#include "tools/canvas/CanvasMouse.h"
#include "tools/crop/CropPanel.h"
#include "widgets/PictureButton.h"

#include <QKeyEvent>

namespace lumora {

namespace {

constexpr int lassoTarget = 4; // image of picTarget until the mouse moves

/// The part of the box that is inside the picture.
PixelRect pixelRect(const QRect &box, QSize picture) {
    const QRect part = box.intersected(QRect(QPoint(), picture));
    return {part.left(), part.top(), part.left() + part.width(), part.top() + part.height()};
}

/// What is marked, in edgeSteps to a pixel.
Region fineRegion(const PhotoSelection &marked, QSize picture) {
    const QSize size = picture * edgeSteps;
    if (marked.shape() == PhotoSelection::Shape::Lasso) {
        std::vector<PicturePoint> points = marked.lassoPoints();
        for (PicturePoint &point : points) {
            point = {point.x * edgeSteps, point.y * edgeSteps};
        }
        return Region::lasso(size.width(), size.height(), points);
    }
    const PixelRect box = pixelRect(marked.box(), picture);
    const auto make = marked.shape() == PhotoSelection::Shape::Ellipse ? &Region::ellipse : &Region::rectangle;
    return make(size.width(), size.height(), box.left * edgeSteps, box.top * edgeSteps, box.right * edgeSteps,
                box.bottom * edgeSteps);
}

} // namespace

CutOutTool::CutOutTool(AppContext &ctx, PhotoView &view, CanvasMouse &mouse, SelectionOutline &outline, QWidget *window)
    : PanelTool(mouse, CropPanel::of(window, ctx), window), m_ctx(ctx), m_view(view),
      m_panel(static_cast<CropPanel *>(panel())), m_lasso(ctx, mouse, outline) {
    const auto connectButton = [this](PictureButton *button, bool (CutOutTool::*procedure)()) {
        connect(button, &QAbstractButton::clicked, this, [this, procedure] {
            if ((this->*procedure)()) {
                leave();
            }
        });
    };
    // DeleteSelection keeps the marked part and clears the rest; InverseDelete does the reverse.
    connectButton(m_panel->cmdCropCutNow(), &CutOutTool::DeleteSelection);
    connectButton(m_panel->cmdDelInverse(), &CutOutTool::InverseDelete);
}

bool CutOutTool::open(const QString &) {
    if (!m_ctx.photo.PhotoLoaded() || m_ctx.photo.picCanvas().isNull()) {
        return false;
    }
    m_mouse.setTool(nullptr); // whichever of the two tools uses the panel
    m_panel->prepare(CropPanel::Use::CutOut);
    begin();
    m_mouse.clearMarked();
    m_ctx.flags.startSelection(PhotoSelection::Shape::Lasso);
    m_mouse.showTarget(lassoTarget);
    m_view.setFocus(); // for the keys
    Q_EMIT hint(m_ctx.texts.text("CutOutHint"), HintedAct::Drag);
    return true;
}

void CutOutTool::accept() {
    if (DeleteSelection()) {
        leave();
    }
}

void CutOutTool::end() {
    m_lasso.end();
    m_ctx.flags.endSelection();
    m_mouse.clearMarked();
    PanelTool::end();
}

// --- Cutting --------------------------------------------------------------------------------------------------------

bool CutOutTool::DeleteSelection() {
    return run([](const QImage &photo, const PhotoSelection &marked) {
        return keptInRegion(photo, fineRegion(marked, photo.size()), pixelRect(marked.box(), photo.size()));
    });
}

bool CutOutTool::InverseDelete() {
    return run([](const QImage &photo, const PhotoSelection &marked) {
        return clearedInRegion(photo, fineRegion(marked, photo.size()));
    });
}

bool CutOutTool::run(const Cut &cut) {
    const QImage photo = m_ctx.photo.picCanvas();
    const PhotoSelection marked = m_ctx.photo.selection();
    if (photo.isNull()) {
        return false;
    }
    bool nothing = true;
    QImage next;
    const bool isWhole = m_ctx.tasks.run(
        [&] {
            nothing = marked.region(photo.size()).isEmpty();
            next = nothing ? QImage() : cut(photo, marked);
        },
        Stopping::Offered);
    if (!isWhole) {
        return false;
    }
    if (nothing) {
        Q_EMIT tipWanted();
        return false;
    }
    if (!m_ctx.photo.changePhoto(next)) {
        Q_EMIT message(m_ctx.texts.text("StatusNoMemory"), false);
        return false;
    }
    return true;
}

// --- Mouse and keys -------------------------------------------------------------------------------------------------

void CutOutTool::press(const PointerEvent &at) {
    m_lasso.press(at);
}

void CutOutTool::move(const PointerEvent &at) {
    m_lasso.move(at);
}

void CutOutTool::release(const PointerEvent &at) {
    m_lasso.release(at);
}

bool CutOutTool::scrollsAtEdge() const {
    return m_lasso.scrollsAtEdge();
}

void CutOutTool::keyPress(const QKeyEvent &key) {
    if (m_lasso.wantsKey(key)) {
        m_lasso.keyPress(key);
    } else {
        leave();
    }
}

} // namespace lumora
