#include "tools/rotate/RotateTool.h"

#include "imaging/EffectEngine.h"
#include "imaging/Scale.h"
#include "imaging/transforms/Transform.h"
#include "session/AppContext.h"
#include "tools/canvas/CanvasMouse.h"
#include "widgets/FloatingToolbar.h"

#include <cmath>

namespace lumora {

namespace {

constexpr int previewSide = 120; // pixels of the preview pictures' longer side

/// An item of FT2 that turns the photo at once.
struct TurnRow {
    const char *key;
    QImage (*transform)(const QImage &picture);
    void (RotateTool::*turn)();
};

const TurnRow turns[] = {
    {"keyRotate1", quarterTurnedAnticlockwise, &RotateTool::RotatePic90},
    {"keyRotate2", flippedVertically, &RotateTool::RotatePic180},
    {"keyRotate3", quarterTurnedClockwise, &RotateTool::RotatePic270},
    {"keyRotate5", mirrored, &RotateTool::mirrorPic},
};

/// The photo with its longer side as long as asked for, the other one following.
QImage previewOf(const QImage &photo, int longer) {
    const auto following = [longer](int side, int other) {
        return qMax(1, static_cast<int>(std::nearbyint(double(side) * longer / other)));
    };
    const bool upright = photo.height() > photo.width();
    return upright ? scaled(photo, following(photo.width(), photo.height()), longer)
                   : scaled(photo, longer, following(photo.height(), photo.width()));
}

} // namespace

RotateTool::RotateTool(AppContext &ctx, PhotoView &view, CanvasMouse &mouse, FloatingToolbar *FT2, QObject *parent)
    : EditorTool(parent), m_ctx(ctx), m_mouse(mouse), m_FT2(FT2), m_grid(view), m_byHand(ctx, view) {
    connect(&m_byHand, &RotateByHand::ended, this, [this] { m_grid.HideGrid(); });
    connect(&m_byHand, &RotateByHand::endWanted, this, [this] {
        close();
        Q_EMIT finished();
    });
    connect(&m_byHand, &RotateByHand::failed, this,
            [this] { Q_EMIT message(m_ctx.texts.text("StatusNoMemory"), false); });
    connect(&m_byHand, &RotateByHand::hint, this,
            [this](const char *text, bool good) { Q_EMIT message(m_ctx.texts.text(text), good); });
}

void RotateTool::CreateTHMRorationSFX() const {
    const QImage &photo = m_ctx.photo.picCanvas();
    if (photo.isNull() || m_FT2 == nullptr) {
        return;
    }
    const qreal devicePixels = m_FT2->devicePixelRatioF();
    const QImage picR = previewOf(photo, qRound(previewSide * devicePixels));
    for (const TurnRow &row : turns) {
        EffectEngine PixTwix1;
        PixTwix1.setPicture(picR);
        PixTwix1.apply(row.transform, false); // when it fails the picture stays unrotated
        QPixmap preview = QPixmap::fromImage(PixTwix1.picture());
        preview.setDevicePixelRatio(devicePixels);
        m_FT2->setItemPicture(row.key, preview);
    }
}

bool RotateTool::open(const QString &key) {
    if (m_ctx.photo.picCanvas().isNull()) {
        return false;
    }
    for (const TurnRow &row : turns) {
        if (key == row.key) {
            dropSelection();
            (this->*row.turn)();
            Q_EMIT finished();
            return false;
        }
    }
    if (key != "keyRotate4") {
        return false;
    }
    dropSelection();
    startFreeRotation();
    return true;
}

bool RotateTool::hasMouse() const {
    return m_mouse.tool() == &m_byHand;
}

void RotateTool::RotatePic90() {
    rotatePic(quarterTurnedAnticlockwise);
}

void RotateTool::RotatePic180() {
    rotatePic(flippedVertically);
}

void RotateTool::RotatePic270() {
    rotatePic(quarterTurnedClockwise);
}

void RotateTool::mirrorPic() {
    rotatePic(mirrored);
}

void RotateTool::rotatePic(Transform transform) {
    if (m_ctx.photo.picCanvas().isNull()) {
        return;
    }
    EffectEngine PixTwix1;
    PixTwix1.setPicture(m_ctx.photo.picCanvas());
    bool turned = false;
    if (!m_ctx.tasks.run([&] { turned = PixTwix1.apply(transform, false); }, Stopping::Offered)) {
        return;
    }
    // Even on failure this is an undo step, and the copies of the photo are made again.
    const bool taken = m_ctx.photo.changePhoto(PixTwix1.picture());
    if (!turned || !taken) {
        Q_EMIT message(m_ctx.texts.text("StatusNoMemory"), false);
    }
}

void RotateTool::dropSelection() {
    m_mouse.setTool(nullptr);
    m_mouse.clearMarked();
    m_ctx.flags.endSelection();
}

void RotateTool::startFreeRotation() {
    if (m_ctx.fields.txtGrid) {
        m_grid.DrawGrid();
    }
    m_mouse.setTool(&m_byHand);
    Q_EMIT message(m_ctx.texts.text("StatusFreeRotation"), true);
}

void RotateTool::close() {
    if (FreeRotateActive()) {
        m_mouse.setTool(nullptr);
    }
}

} // namespace lumora
