#include "tools/red-eye/RedEyeTool.h"

#include "imaging/transforms/Canvas.h"
#include "imaging/transforms/EyeShine.h"
#include "session/AppContext.h"
#include "tools/canvas/CanvasMouse.h"
#include "tools/canvas/TargetCursor.h"
#include "tools/red-eye/RedEyePanel.h"
#include "widgets/Theme.h"

#include <QPainter>
#include <QPixmap>
#include <cmath>

namespace lumora {

namespace {

constexpr int cross = 3;             // image of picTarget
constexpr qreal smallestRing = 4;    // pixels of the view: smaller ones would not be visible
constexpr qreal widestPointer = 128; // radius in device pixels: larger cursors are not supported by displays
constexpr qreal ringEdge = 3;        // half of the ring's line plus antialiasing

/// A ring that is visible on dark and bright photos, with a small cross in its middle.
void drawRing(QPainter &painter, QPointF centre, qreal radius) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    const qreal arm = qMin(3.0, radius / 2);
    const QPair<QColor, qreal> lines[] = {{Qt::white, 4}, {colours::ink, 1.75}};
    for (const auto &[colour, width] : lines) {
        painter.setPen(QPen(colour, width, Qt::SolidLine, Qt::RoundCap));
        painter.drawEllipse(centre, radius, radius);
        painter.drawLine(centre - QPointF(arm, 0), centre + QPointF(arm, 0));
        painter.drawLine(centre - QPointF(0, arm), centre + QPointF(0, arm));
    }
    painter.restore();
}

/// A ring of that radius in the view's pixels as a pointer, sharp at that device pixel ratio.
QCursor ringCursor(qreal radius, qreal scale) {
    const int half = int(std::ceil(radius + ringEdge));
    const int side = int(std::ceil((2 * half + 1) * scale));
    QPixmap picture(side, side);
    picture.setDevicePixelRatio(scale);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    drawRing(painter, QPointF(half + 0.5, half + 0.5), radius);
    painter.end();
    return QCursor(picture, half, half);
}

} // namespace

RedEyeTool::RedEyeTool(AppContext &ctx, PhotoView &view, CanvasMouse &mouse, QWidget *window)
    : PanelTool(mouse, new RedEyePanel(window), window), m_ctx(ctx), m_view(view),
      m_panel(static_cast<RedEyePanel *>(panel())) {
    connect(m_panel, &RedEyePanel::radiusChanged, this, &RedEyeTool::refreshPointer);
    connect(m_panel, &RedEyePanel::shineChanged, this, &RedEyeTool::showHint);
    connect(&view, &PhotoView::visiblePartChanged, this, &RedEyeTool::refreshPointer); // the zoom, too
}

bool RedEyeTool::open(const QString &) {
    if (m_ctx.photo.picCanvas().isNull()) {
        return false;
    }
    ApplyRedEye();
    return true;
}

void RedEyeTool::ApplyRedEye() {
    begin();
    m_ctx.flags.endSelection();
    PhotoSelection selection = m_ctx.photo.selection();
    selection.hide();
    m_ctx.photo.setSelection(selection);
    refreshPointer();
    showHint();
}

void RedEyeTool::end() {
    m_view.viewport()->update(); // a large ring was painted
    PanelTool::end();
}

void RedEyeTool::clicked(QPoint pixel) {
    const QImage &photo = m_ctx.photo.picCanvas();
    const int radius = m_panel->radius();
    if (redEyeBounds(photo.width(), photo.height(), pixel.x(), pixel.y(), radius).isEmpty()) {
        return;
    }
    QImage next = photo; // detaches on write
    EyeShineOutcome outcome = EyeShineOutcome::NoMemory;
    m_ctx.tasks.run([&, shine = m_panel->shine()] {
        if (shine) {
            outcome = darkenEyeShine(next, pixel.x(), pixel.y(), radius, *shine);
        } else if (removeRedEye(next, pixel.x(), pixel.y(), radius)) {
            outcome = EyeShineOutcome::Done;
        }
    });
    if (outcome == EyeShineOutcome::NotFound) {
        Q_EMIT message(m_ctx.texts.text("EyeNotFound"), false);
    } else if (outcome == EyeShineOutcome::NoMemory || !m_ctx.photo.changePhoto(next)) {
        Q_EMIT message(m_ctx.texts.text("StatusNoMemory"), false);
    }
}

void RedEyeTool::showHint() {
    Q_EMIT hint(m_ctx.texts.text(m_panel->shine() ? "ShiningEyeHint" : "RedEyeHint"), HintedAct::Click);
}

// --- Pointer --------------------------------------------------------------------------------------------------------

/// Pixels of the view at the current zoom, up to the outer edge of the disc's farthest pixel.
qreal RedEyeTool::ringRadius() const {
    const qreal radius = m_view.toView({m_panel->radius() + 0.5, 0}).x() - m_view.toView({0, 0}).x();
    return qMax(radius, smallestRing);
}

bool RedEyeTool::ringFitsPointer() const {
    return ringRadius() * m_view.devicePixelRatioF() <= widestPointer;
}

/// Where the cursor does not show it.
bool RedEyeTool::ringIsPainted() const {
    return m_mouse.isLedByKeys() || !ringFitsPointer();
}

QCursor RedEyeTool::pointer() {
    const qreal scale = m_view.devicePixelRatioF();
    if (!ringFitsPointer()) {
        return targetCursor(cross, scale);
    }
    const qreal radius = ringRadius();
    if (m_ringRadius != radius || m_ringScale != scale) {
        m_ringRadius = radius;
        m_ringScale = scale;
        m_ring = ringCursor(radius, scale);
    }
    return m_ring;
}

void RedEyeTool::refreshPointer() {
    if (RDMode()) {
        m_view.setToolCursor(pointer());
        m_view.viewport()->update();
    }
}

/// The mouse-down has set another pointer.
void RedEyeTool::press(const PointerEvent &) {
    refreshPointer();
}

void RedEyeTool::move(const PointerEvent &at) {
    m_view.setToolCursor(pointer());
    if (ringIsPainted()) {
        repaintRing(m_pointer);
        repaintRing(at.view);
    }
    m_pointer = at.view;
}

void RedEyeTool::repaintRing(QPointF at) {
    const qreal reach = ringRadius() + ringEdge;
    m_view.viewport()->update(QRectF(at.x() - reach, at.y() - reach, 2 * reach, 2 * reach).toAlignedRect());
}

void RedEyeTool::paint(QPainter &painter) {
    if (ringIsPainted()) {
        drawRing(painter, m_pointer, ringRadius());
    }
}

} // namespace lumora
