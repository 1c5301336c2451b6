#include "tools/rotate/RotateTool.h"

#include "imaging/EffectEngine.h"
#include "imaging/Scale.h"
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
    bool (*transform)(EffectEngine &engine);
    void (RotateTool::*turn)();
};

bool anticlockwise(EffectEngine &engine) {
    return engine.quarterTurn(false);
}

bool flip(EffectEngine &engine) {
    return engine.flip();
}

bool clockwise(EffectEngine &engine) {
    return engine.quarterTurn(true);
}

const TurnRow turns[] = {
    {"keyRotate1", anticlockwise, &RotateTool::RotatePic90},
    {"keyRotate2", flip, &RotateTool::RotatePic180},
    {"keyRotate3", clockwise, &RotateTool::RotatePic270},
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

RotateTool::RotateTool(AppContext &ctx, PhotoView &view, CanvasMouse &mouse, QObject *parent)
    : QObject(parent), m_ctx(ctx), m_mouse(mouse), m_grid(view), m_byHand(ctx, view) {
    connect(&m_byHand, &RotateByHand::started, this, [this] {
        m_ctx.flags.FreeRotateActive = true;
        Q_EMIT toolsEnabled(false);
    });
    connect(&m_byHand, &RotateByHand::ended, this, [this] {
        m_ctx.flags.FreeRotateActive = false;
        m_grid.HideGrid();
        Q_EMIT toolsEnabled(true);
    });
    connect(&m_byHand, &RotateByHand::endWanted, this, [this] {
        close();
        Q_EMIT arrowWanted();
    });
    connect(&m_byHand, &RotateByHand::failed, this,
            [this] { Q_EMIT message(m_ctx.texts.text("StatusNoMemory"), false); });
}

void RotateTool::CreateTHMRorationSFX(FloatingToolbar &FT2) const {
    const QImage &photo = m_ctx.photo.picCanvas();
    if (photo.isNull()) {
        return;
    }
    const qreal devicePixels = FT2.devicePixelRatioF();
    const QImage picR = previewOf(photo, qRound(previewSide * devicePixels));
    for (const TurnRow &row : turns) {
        EffectEngine PixTwix1;
        PixTwix1.setPicture(picR);
        row.transform(PixTwix1); // where it refuses the picture stays unturned
        QPixmap preview = QPixmap::fromImage(PixTwix1.picture());
        preview.setDevicePixelRatio(devicePixels);
        FT2.setItemPicture(row.key, preview);
    }
}

void RotateTool::choose(const QString &key) {
    Q_EMIT hideFloatingToolbars();
    if (m_ctx.photo.picCanvas().isNull()) {
        return;
    }
    for (const TurnRow &row : turns) {
        if (key == row.key) {
            clearOtherTools();
            (this->*row.turn)();
            Q_EMIT arrowWanted();
            return;
        }
    }
    if (key == "keyRotate4") {
        clearOtherTools();
        startFreeRotation();
    }
}

void RotateTool::RotatePic90() {
    rotatePic(anticlockwise);
}

void RotateTool::RotatePic180() {
    rotatePic(flip);
}

void RotateTool::RotatePic270() {
    rotatePic(clockwise);
}

void RotateTool::rotatePic(Transform transform) {
    if (m_ctx.photo.picCanvas().isNull()) {
        return;
    }
    EffectEngine PixTwix1;
    PixTwix1.setPicture(m_ctx.photo.picCanvas());
    bool turned = false;
    m_ctx.tasks.run([&] { turned = transform(PixTwix1); });
    // Refused or not, this is an undo step, and the copies of the photo are made anew.
    const bool taken = m_ctx.photo.changePhoto(PixTwix1.picture());
    if (!turned || !taken) {
        Q_EMIT message(m_ctx.texts.text("StatusNoMemory"), false);
    }
}

void RotateTool::clearOtherTools() {
    m_mouse.setTool(nullptr);
    m_mouse.clearMarked();
    m_mouse.EditMode = 0;
    m_mouse.MoveMode = false;
    ToolFlags &flags = m_ctx.flags;
    flags.RDMode = false;
    flags.ColorPickerMode = false;
    flags.SelectionActive = false;
    flags.CropToolActive = false;
    flags.FreeResizeActive = false;
    flags.canvasToolMode = 0;
}

void RotateTool::startFreeRotation() {
    if (m_ctx.fields.txtGrid == "1") {
        m_grid.DrawGrid();
    }
    m_mouse.setTool(&m_byHand);
    Q_EMIT message(m_ctx.texts.text("StatusFreeRotation", "Drag the round handle to turn the photo."), true);
}

void RotateTool::close() {
    if (FreeRotateActive()) {
        m_mouse.setTool(nullptr);
    }
}

} // namespace lumora
