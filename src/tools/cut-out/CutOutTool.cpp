#include "tools/cut-out/CutOutTool.h"

#include "imaging/transforms/ClearRegion.h"
#include "session/AppContext.h"
#include "tools/canvas/CanvasMouse.h"
#include "tools/crop/CropPanel.h"
#include "tools/select/SelectionTool.h"
#include "widgets/PictureButton.h"

#include <QKeyEvent>

namespace lumora {

namespace {

constexpr int lassoKind = 3;
constexpr int lassoTarget = 4; // image of picTarget until the mouse moves

/// What of the box lies on the picture.
PixelRect pixelRect(const QRect &box, QSize picture) {
    const QRect part = box.intersected(QRect(QPoint(), picture));
    return {part.left(), part.top(), part.left() + part.width(), part.top() + part.height()};
}

} // namespace

CutOutTool::CutOutTool(AppContext &ctx, PhotoView &view, CanvasMouse &mouse, CropPanel &panel, SelectionTool &lasso,
                       QObject *parent)
    : QObject(parent), m_ctx(ctx), m_view(view), m_mouse(mouse), m_panel(panel), m_lasso(lasso) {
    const auto connectButton = [this](PictureButton *button, bool (CutOutTool::*procedure)()) {
        connect(button, &QAbstractButton::clicked, this, [this, procedure] {
            if ((this->*procedure)()) {
                m_panel.exit();
            }
        });
    };
    // The names are crossed: what is selected for deletion in the one is the background.
    connectButton(panel.cmdCropCutNow(), &CutOutTool::DeleteSelection);
    connectButton(panel.cmdDelInverse(), &CutOutTool::InverseDelete);
}

void CutOutTool::openCutOut() {
    if (!m_ctx.photo.PhotoLoaded() || m_ctx.photo.picCanvas().isNull()) {
        return;
    }
    m_panel.open(CropPanel::Use::CutOut, *this);
    m_ctx.flags.SelectionKind = lassoKind;
    m_mouse.showTarget(lassoTarget);
    m_view.setFocus(); // for the keys
}

void CutOutTool::close() {
    if (m_panel.use() == CropPanel::Use::CutOut) {
        m_panel.close();
    }
}

void CutOutTool::end() {
    m_lasso.end();
    close();
}

// --- Cutting --------------------------------------------------------------------------------------------------------

bool CutOutTool::DeleteSelection() {
    return run([](const QImage &photo, const PhotoSelection &marked) {
        return keptInRegion(photo, marked.region(photo.size()), pixelRect(marked.box(), photo.size()));
    });
}

bool CutOutTool::InverseDelete() {
    return run([](const QImage &photo, const PhotoSelection &marked) {
        return clearedInRegion(photo, marked.region(photo.size()));
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
    m_ctx.tasks.run([&] {
        nothing = marked.region(photo.size()).isEmpty();
        next = nothing ? QImage() : cut(photo, marked);
    });
    if (nothing) {
        Q_EMIT m_panel.tipWanted();
        return false;
    }
    if (!m_ctx.photo.changePhoto(next)) {
        Q_EMIT m_panel.message(m_ctx.texts.text("StatusNoMemory"), false);
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
    m_ctx.flags.CropToolActive = m_ctx.flags.CropToolActive || !m_ctx.photo.selection().isEmpty();
}

bool CutOutTool::scrollsAtEdge() const {
    return m_lasso.scrollsAtEdge();
}

bool CutOutTool::wantsKey(const QKeyEvent &key) const {
    return key.key() == Qt::Key_Escape && key.modifiers() == Qt::NoModifier;
}

void CutOutTool::keyPress(const QKeyEvent &key) {
    if (m_lasso.wantsKey(key)) {
        m_lasso.keyPress(key);
    } else {
        m_panel.exit();
    }
}

} // namespace lumora
