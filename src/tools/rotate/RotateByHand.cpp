#include "tools/rotate/RotateByHand.h"

#include "imaging/transforms/RotatedExtent.h"
#include "imaging/transforms/Transform.h"
#include "session/AppContext.h"
#include "tools/canvas/Dimming.h"
#include "tools/canvas/PointerLabel.h"
#include "tools/rotate/RotateControls.h"
#include "widgets/PictureButton.h"
#include "widgets/Theme.h"

#include <QKeyEvent>
#include <QLocale>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>
#include <cmath>
#include <numbers>

namespace lumora {

namespace {

// pixels
constexpr double clickSlop = 3; // that an unsteady hand may move within a click
constexpr double deadZone = 16; // around the pivot, where the angle is undefined
constexpr double knobRadius = 22;
constexpr int knobPicture = 32;
constexpr double edgeDistance = 44; // of the handle from the view's edge
constexpr double leastRadius = 48;
constexpr double stem = 36; // distance of the handle from a small photo

constexpr double snap = 15;   // degrees, with Shift
constexpr double finest = 10; // steps to a degree

double normal(double degrees) {
    return std::remainder(degrees, 360.0);
}

double toSteps(double degrees, double step) {
    return std::round(degrees / step) * step;
}

} // namespace

RotateByHand::RotateByHand(AppContext &ctx, PhotoView &view, QObject *parent)
    : QObject(parent), m_ctx(ctx), m_view(view), m_preview(view), m_controls(new RotateControls(view)) {
    m_settle.setSingleShot(true);
    m_settle.setInterval(settleTime);
    connect(m_controls->cmdStraighten(), &QAbstractButton::toggled, this, [this](bool on) {
        if (m_active) {
            showHand();
            m_view.viewport()->update(); // without the handle
            Q_EMIT hint(on ? "StatusStraighten" : "StatusFreeRotation", true);
        }
    });
    connect(m_controls->chkCutCorners(), &QAbstractButton::toggled, this, [this] { m_view.viewport()->update(); });
    connect(&m_settle, &QTimer::timeout, this, [this] {
        m_ctx.tasks.whenIdle(this, [this] {
            if (m_trying == Trying::Keys && !m_settle.isActive()) {
                finish();
            }
        });
    });
    connect(&ctx.photo, &PhotoDocument::changed, this, &RotateByHand::photoChanged);
    connect(&view, &PhotoView::visiblePartChanged, this, [this] {
        m_preview.forgetCopy();
        if (m_active) {
            m_view.viewport()->update(); // the handle's place depends on the view
        }
    });
    connect(&view, &PhotoView::paintOverlay, this, [this](QPainter &painter) {
        if (m_active) {
            paintHandle(painter);
        }
    });
}

// --- The photo and its turns ----------------------------------------------------------------------------------------

void RotateByHand::start() {
    m_view.setFocus(); // for the arrow keys
    m_active = true;
    takeAsUnturned();
    m_controls->showAtFirst();
    showHand();
}

void RotateByHand::end() {
    if (m_trying == Trying::Keys) {
        finish(); // the keys are released: apply this angle
    }
    drop();
    m_active = false;
    m_unturned = QImage();
    m_preview.setPhoto({});
    m_controls->hide();
    Q_EMIT ended();
}

void RotateByHand::takeAsUnturned() {
    m_unturned = m_ctx.photo.picCanvas();
    m_preview.setPhoto(m_unturned);
    m_turns = {0};
    m_turn = 0;
    m_degrees = 0;
}

bool RotateByHand::isTurnedBy(double degrees) const {
    const QImage photo = m_ctx.photo.picCanvas();
    bool isSame = false;
    m_ctx.tasks.run([&] { isSame = photo == rotated(m_unturned, degrees); });
    return isSame;
}

/// Undo and redo go to a previous or next angle; after any other change rotation starts from the new photo.
void RotateByHand::photoChanged(PhotoChanges what) {
    if (!m_active || m_finishing || !what.testAnyFlags(PhotoChange::Pixels | PhotoChange::Size | PhotoChange::Loaded)) {
        return;
    }
    drop();
    if (m_turn > 0 && isTurnedBy(m_turns[m_turn - 1])) {
        --m_turn;
    } else if (m_turn + 1 < m_turns.size() && isTurnedBy(m_turns[m_turn + 1])) {
        ++m_turn;
    } else {
        takeAsUnturned();
    }
    m_degrees = m_turns[m_turn];
}

void RotateByHand::turnTo(double degrees, Trying how) {
    m_trying = how;
    m_degrees = normal(degrees);
    m_view.setPhotoHidden(true);
    m_view.viewport()->update();
}

/// Rotates the photo itself by the previewed angle.
void RotateByHand::finish() {
    m_settle.stop();
    const double degrees = m_degrees;
    if (m_finishing || degrees == m_turns[m_turn]) {
        drop();
        return;
    }
    m_finishing = true;
    QImage turned;
    const bool isWhole = m_ctx.tasks.run([&] { turned = rotated(m_unturned, degrees); }, Stopping::Offered);
    const QPointF middle = pivot();
    const bool done = isWhole && m_ctx.photo.changePhoto(turned);
    if (done) {
        m_turns.resize(m_turn + 1);
        m_turns.push_back(degrees);
        ++m_turn;
        keepInPlace(middle);
    }
    m_finishing = false;
    drop();
    if (isWhole && !done) {
        Q_EMIT failed();
    }
}

QRect RotateByHand::keptPart() const {
    const QRect whole({}, rotatedExtent(m_unturned.size(), m_degrees));
    const QRect inside =
        m_controls->chkCutCorners()->isChecked() ? insideRotated(m_unturned.size(), m_degrees) : QRect();
    return inside.isNull() ? whole : inside;
}

void RotateByHand::accept() {
    if (m_trying == Trying::Keys) {
        finish();
    }
    if (cutCorners()) {
        Q_EMIT endWanted();
    }
}

/// One step with the last turn. False when memory is refused, which it tells, and when the user stops it.
bool RotateByHand::cutCorners() {
    const QImage photo = m_ctx.photo.picCanvas();
    const QRect part = keptPart();
    if (part == photo.rect() || m_finishing) {
        return true;
    }
    m_finishing = true;
    QImage inside;
    const bool isWhole = m_ctx.tasks.run(
        [&] {
            inside = cropped(photo, {part.left(), part.top(), part.left() + part.width(), part.top() + part.height()});
        },
        Stopping::Offered);
    const bool cut = isWhole && m_ctx.photo.changePhoto(inside, {.recordUndo = false});
    m_finishing = false;
    if (isWhole && !cut) {
        Q_EMIT failed();
    }
    return cut;
}

/// Shows the photo itself again, with the angle that it has.
void RotateByHand::drop() {
    m_settle.stop();
    m_trying = Trying::Nothing;
    m_line.reset();
    if (!m_turns.empty()) {
        m_degrees = m_turns[m_turn];
    }
    m_view.setPhotoHidden(false);
    m_view.viewport()->update();
}

/// A rotated photo is larger or smaller; its middle stays at its place in the view if possible.
void RotateByHand::keepInPlace(QPointF before) {
    const QPointF moved = pivot() - before;
    m_view.horizontalScrollBar()->setValue(m_view.horizontalScrollBar()->value() + qRound(moved.x()));
    m_view.verticalScrollBar()->setValue(m_view.verticalScrollBar()->value() + qRound(moved.y()));
}

// --- The hand -------------------------------------------------------------------------------------------------------

QPointF RotateByHand::pivot() const {
    return m_view.toView(QRectF(m_ctx.photo.picCanvas().rect()).center());
}

QPointF RotateByHand::handle() const {
    const QRectF view = m_view.viewport()->rect();
    const QSizeF photo = QSizeF(m_unturned.size()) * m_ctx.photo.zoom() / 100.0;
    const double besidePhoto = std::hypot(photo.width(), photo.height()) / 2 + stem;
    const double inView = std::min(view.width(), view.height()) / 2 - edgeDistance;
    const double radius = std::max(leastRadius, std::min(besidePhoto, inView));
    const double angle = m_degrees * std::numbers::pi / 180;
    const QPointF at = pivot() + radius * QPointF(std::sin(angle), -std::cos(angle));
    return {std::clamp(at.x(), knobRadius, std::max(knobRadius, view.width() - knobRadius)),
            std::clamp(at.y(), knobRadius, std::max(knobRadius, view.height() - knobRadius))};
}

/// Of a point of the view as seen from the pivot, degrees clockwise from straight up.
double RotateByHand::angleAt(QPointF view) const {
    const QPointF from = view - pivot();
    return std::atan2(from.x(), -from.y()) * 180 / std::numbers::pi;
}

bool RotateByHand::straightens() const {
    return m_controls->cmdStraighten()->isChecked();
}

bool RotateByHand::isHeldByMouse() const {
    return m_trying == Trying::Grabbed || m_trying == Trying::Drag || m_trying == Trying::Line;
}

void RotateByHand::press(const PointerEvent &at) {
    const QPointF from = at.view - pivot();
    if (!straightens() && std::hypot(from.x(), from.y()) < deadZone) {
        showHand();
        return;
    }
    if (m_trying == Trying::Keys) {
        finish();
    }
    m_pressedAt = m_pointer = at.view;
    if (straightens()) {
        m_trying = Trying::Line;
        m_line = HorizonLine{at.view, at.view};
    } else {
        m_trying = Trying::Grabbed;
        m_grabbedAt = angleAt(at.view);
    }
    showHand();
}

void RotateByHand::move(const PointerEvent &at) {
    m_pointer = at.view;
    if (m_trying == Trying::Grabbed && (at.view - m_pressedAt).manhattanLength() >= clickSlop) {
        m_trying = Trying::Drag;
    }
    if (m_trying == Trying::Drag) {
        turnWithPointer(at);
    } else if (m_line) {
        m_line->to = at.view;
        m_view.viewport()->update();
    }
    showHand();
}

void RotateByHand::turnWithPointer(const PointerEvent &at) {
    const double free = normal(m_turns[m_turn] + angleAt(at.view) - m_grabbedAt);
    turnTo(toSteps(free, at.modifiers & Qt::ShiftModifier ? snap : 1 / finest), Trying::Drag);
}

void RotateByHand::release(const PointerEvent &) {
    if (m_trying == Trying::Line) {
        straighten();
    } else if (m_trying == Trying::Drag) {
        finish();
    } else if (m_trying == Trying::Grabbed) {
        drop();
    }
    showHand();
}

/// Turns the photo by what the line says.
void RotateByHand::straighten() {
    const HorizonLine line = *m_line;
    if (!line.isLongEnough()) {
        drop();
        Q_EMIT hint("StatusLineShort", false);
        return;
    }
    m_line.reset();
    turnTo(toSteps(m_turns[m_turn] + line.straightening(), 1 / finest), Trying::Drag);
    finish();
}

void RotateByHand::showHand() {
    m_view.setToolCursor(straightens() ? Qt::CrossCursor : isHeldByMouse() ? Qt::ClosedHandCursor : Qt::OpenHandCursor);
}

bool RotateByHand::wantsKey(const QKeyEvent &key) const {
    if (key.modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier)) {
        return false;
    }
    switch (key.key()) {
    case Qt::Key_Escape:
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Left:
    case Qt::Key_Right:
    case Qt::Key_Up:
    case Qt::Key_Down:
        return true;
    default:
        return false;
    }
}

void RotateByHand::keyPress(const QKeyEvent &key) {
    switch (key.key()) {
    case Qt::Key_Escape:
        if (m_trying != Trying::Nothing) {
            drop();
            showHand();
        } else if (straightens()) {
            m_controls->cmdStraighten()->setChecked(false);
        } else {
            Q_EMIT endWanted();
        }
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
        if (!isHeldByMouse()) {
            accept();
        }
        break;
    default:
        if (!isHeldByMouse()) {
            const bool clockwise = key.key() == Qt::Key_Right || key.key() == Qt::Key_Up;
            turnTo(m_degrees + (clockwise ? 1 : -1), Trying::Keys);
            m_settle.start();
        }
        break;
    }
}

// --- What is seen ---------------------------------------------------------------------------------------------------

void RotateByHand::paint(QPainter &painter) {
    if (m_trying == Trying::Drag || m_trying == Trying::Keys) {
        m_preview.paint(painter, pivot(), m_ctx.photo.zoom() / 100.0, m_degrees);
    }
    const QRect kept = keptPart();
    const QSizeF whole = rotatedExtent(m_unturned.size(), m_degrees);
    if (kept.size() != whole.toSize()) {
        const double scale = m_ctx.photo.zoom() / 100.0;
        const QPointF origin = pivot() - QPointF(whole.width(), whole.height()) / 2 * scale;
        const double devicePixels = m_view.devicePixelRatioF();
        const auto inView = [&](const QRectF &part) {
            return onDevicePixels({origin + part.topLeft() * scale, part.size() * scale}, devicePixels);
        };
        paintDimming(painter, inView(kept), inView(QRectF({}, whole)));
        painter.setPen(QPen(Qt::white, 2));
        painter.setBrush(Qt::NoBrush);
        painter.drawRect(inView(kept).adjusted(-1, -1, 1, 1));
    }
}

/// After the grid, which is drawn over the photo.
void RotateByHand::paintHandle(QPainter &painter) const {
    if (straightens()) {
        if (m_line) {
            m_line->paint(painter);
        }
        paintAngle(painter);
        return;
    }
    const QPointF knob = handle();
    const QPointF middle = pivot();
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    for (const auto &[colour, width] : {std::pair(QColor(255, 255, 255, 220), 6.0), std::pair(colours::ink, 2.5)}) {
        painter.setPen(QPen(colour, width, Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(middle, knob);
    }
    painter.setPen(QPen(Qt::white, 2));
    painter.setBrush(colours::ink);
    painter.drawEllipse(middle, 6, 6);
    const bool tried = m_trying != Trying::Nothing;
    painter.setPen(QPen(Qt::white, 3));
    painter.setBrush(tried ? colours::sun : colours::leaf);
    painter.drawEllipse(knob, knobRadius, knobRadius);
    painter.setPen(QPen(colours::ink, 2));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(knob, knobRadius - 1, knobRadius - 1);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.translate(knob);
    painter.rotate(m_degrees);
    painter.drawPixmap(-QPointF(knobPicture, knobPicture) / 2,
                       iconPixmap("rotate-knob", knobPicture, m_view.devicePixelRatioF()));
    painter.restore();
    paintAngle(painter);
}

/// Beside the pointer, or beside the handle that the keys turn.
void RotateByHand::paintAngle(QPainter &painter) const {
    const bool drawn = m_line && m_line->isLongEnough();
    if (m_trying != Trying::Drag && m_trying != Trying::Keys && !drawn) {
        return;
    }
    const double shown = drawn ? normal(toSteps(m_degrees + m_line->straightening(), 1 / finest)) : m_degrees;
    const bool whole = shown == std::round(shown);
    const QString degrees = m_ctx.texts.text("PointerDegrees").arg(m_view.locale().toString(shown, 'f', whole ? 0 : 1));
    paintPointerLabel(painter, m_view.viewport()->rect(), m_trying == Trying::Keys ? handle() : m_pointer, degrees);
}

} // namespace lumora
