#include "tools/canvas/CanvasMouse.h"

#include "tools/canvas/CanvasTool.h"
#include "tools/canvas/TargetCursor.h"
#include "widgets/ClickMoveClick.h"
#include "widgets/Pointers.h"

#include <QKeyEvent>
#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace lumora {

namespace {

constexpr int marking = 3; // images of picTarget
constexpr int ready = 5;

bool isEnterKey(const QKeyEvent &key) {
    return (key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter) && !(key.modifiers() & ~Qt::KeypadModifier);
}

} // namespace

CanvasMouse::CanvasMouse(PhotoDocument &document, const ToolFlags &flags, PhotoView &view, QObject *parent)
    : QObject(parent), m_document(document), m_flags(flags), m_view(view), m_scroller(view), m_keyboard(view, this) {
    setDraggable(*view.viewport(), false);
    connect(&view, &PhotoView::pointer, this, &CanvasMouse::pointer);
    connect(&view, &PhotoView::key, this, &CanvasMouse::key);
    connect(&view, &PhotoView::paintOverlay, this, [this](QPainter &painter) {
        if (m_tool != nullptr) {
            m_tool->paint(painter);
        }
        m_keyboard.paint(painter);
    });
    connect(&m_scroller, &EdgeScroller::scrolled, this, [this] {
        m_last.picture = m_view.toPicture(m_last.view);
        drag(m_last);
    });
}

void CanvasMouse::setTool(CanvasTool *tool) {
    m_dragging = false;
    m_scroller.stop();
    leaveKeyboard();
    if (CanvasTool *const before = std::exchange(m_tool, nullptr)) {
        before->end();
    }
    m_view.setToolCursor({});
    m_tool = tool;
    if (m_tool != nullptr) {
        m_tool->start();
    }
    m_view.viewport()->update(); // the overlays of both
    Q_EMIT toolChanged();
}

void CanvasMouse::showTarget(int image) {
    const qreal devicePixels = m_view.devicePixelRatioF();
    if (m_cursorsFor != std::pair(devicePixels, pointerScale())) {
        m_cursorsFor = {devicePixels, pointerScale()};
        m_cursors.clear();
    }
    auto cursor = m_cursors.constFind(image);
    if (cursor == m_cursors.constEnd()) {
        cursor = m_cursors.insert(image, targetCursor(image, devicePixels));
    }
    m_view.setToolCursor(*cursor);
}

void CanvasMouse::clearMarked() {
    PhotoSelection selection = m_document.selection();
    selection.clear();
    m_document.setSelection(selection);
}

void CanvasMouse::pointer(const PointerEvent &event) {
    leaveKeyboard(); // the mouse has the pointer again
    switch (event.kind) {
    case PointerEvent::Kind::Press:
    case PointerEvent::Kind::DoubleClick:
        if (!m_dragging) { // another button does not affect a drag
            mouseDown(event);
        }
        break;
    case PointerEvent::Kind::Move:
        mouseMove(event);
        break;
    case PointerEvent::Kind::Release:
        mouseUp(event);
        break;
    }
}

QPoint CanvasMouse::rounded(QPointF point) {
    const auto nearest = [](double value) {
        constexpr double farthest = std::numeric_limits<int>::max() / 4.0;
        return static_cast<int>(std::clamp(std::floor(value + 0.5), -farthest, farthest));
    };
    return {nearest(point.x()), nearest(point.y())};
}

// --- Mouse-down -----------------------------------------------------------------------------------------------------

void CanvasMouse::mouseDown(const PointerEvent &event) {
    m_selStart = m_selEnd = rounded(event.view);
    m_selStartPic = m_selEndPic = rounded(event.picture);
    const bool left = event.button == Qt::LeftButton;
    setDraggable(*m_view.viewport(), false);
    // Only the ellipse shows the cross at once; the others wait for the first move.
    const bool cross = left && m_flags.SelectionActive() && m_flags.SelectionKind() == PhotoSelection::Shape::Ellipse;
    showTarget(cross ? marking : ready);
    if (m_tool != nullptr && m_tool->endsAt(m_selStartPic)) {
        clearMarked();
        Q_EMIT arrowWanted();
        return;
    }
    if (!left || m_tool == nullptr) {
        return;
    }
    m_dragging = true;
    m_last = event;
    if (event.kind == PointerEvent::Kind::DoubleClick) {
        m_tool->doubleClick(event);
    } else {
        m_tool->press(event);
    }
    setDraggable(*m_view.viewport(), m_tool != nullptr && m_tool->isDragging());
}

// --- Mouse-move -----------------------------------------------------------------------------------------------------

void CanvasMouse::mouseMove(const PointerEvent &event) {
    Q_EMIT moved();
    if (m_flags.SelectionActive()) {
        showTarget(marking);
    }
    if (m_dragging && !(event.buttons & Qt::LeftButton)) {
        endDrag(event); // another window has grabbed the mouse, including the release
    }
    drag(event);
}

/// The pointer or the photo under it has moved.
void CanvasMouse::drag(const PointerEvent &event) {
    if (event.buttons & Qt::LeftButton) {
        m_selEnd = rounded(event.view);
        if (m_flags.SelectionActive() && m_flags.SelectionKind() == PhotoSelection::Shape::Ellipse) {
            m_selEndPic = rounded(event.picture);
        }
    }
    if (m_tool == nullptr) {
        return;
    }
    m_last = event;
    m_tool->move(event);
    if (m_dragging && !m_pressedByKey && m_tool->scrollsAtEdge()) {
        m_scroller.drag(m_selStart, event.view);
    }
}

// --- Mouse-up -------------------------------------------------------------------------------------------------------

void CanvasMouse::endDrag(const PointerEvent &event) {
    m_scroller.stop();
    if (std::exchange(m_dragging, false)) {
        m_tool->release(event);
    }
}

void CanvasMouse::mouseUp(const PointerEvent &event) {
    if (event.button != Qt::LeftButton) {
        return;
    }
    const QPoint pixel = m_view.pixelAt(event.view); // before the tool's release moves the photo
    endDrag(event);
    if (m_tool != nullptr) {
        m_tool->clicked(pixel);
    }
}

// --- Keys -----------------------------------------------------------------------------------------------------------

void CanvasMouse::key(QKeyEvent &event) {
    const bool forPointer = isForPointer(event);
    if (m_tool == nullptr || (!forPointer && !m_tool->wantsKey(event))) {
        return;
    }
    event.accept();
    if (event.type() != QEvent::KeyPress) {
        return;
    }
    if (forPointer) {
        pointByKey(event);
        return;
    }
    m_tool->keyPress(event);
    if (event.key() == Qt::Key_Escape && std::exchange(m_pressedByKey, false)) {
        endDrag(keyboardEvent(PointerEvent::Kind::Release)); // the tool has cancelled it
    }
}

/// Enter is the tool's own as long as no arrow key has brought the pointer.
bool CanvasMouse::isForPointer(const QKeyEvent &event) const {
    if (m_tool == nullptr || !m_tool->hasKeyboardPointer()) {
        return false;
    }
    return KeyboardPointer::isMove(event) ? !m_tool->wantsKey(event) : isEnterKey(event) && m_keyboard.isShown();
}

void CanvasMouse::pointByKey(const QKeyEvent &event) {
    if (KeyboardPointer::isMove(event)) {
        m_keyboard.move(event, m_tool->keyboardStart());
        mouseMove(keyboardEvent(PointerEvent::Kind::Move));
    } else if (!event.isAutoRepeat()) {
        pressByKey();
    }
}

void CanvasMouse::pressByKey() {
    const bool releases = std::exchange(m_pressedByKey, false);
    if (!releases) {
        mouseDown(keyboardEvent(PointerEvent::Kind::Press));
        m_pressedByKey = m_dragging && m_tool->isDragging();
    }
    if (!m_pressedByKey && m_keyboard.isShown()) { // the press may have ended the tool
        mouseUp(keyboardEvent(PointerEvent::Kind::Release));
    }
}

PointerEvent CanvasMouse::keyboardEvent(PointerEvent::Kind kind) const {
    const bool changes = kind != PointerEvent::Kind::Move;
    const bool down = kind == PointerEvent::Kind::Press || (kind == PointerEvent::Kind::Move && m_pressedByKey);
    return {kind,
            m_keyboard.inPicture(),
            m_keyboard.inView(),
            changes ? Qt::LeftButton : Qt::NoButton,
            down ? Qt::LeftButton : Qt::NoButton,
            Qt::NoModifier};
}

void CanvasMouse::leaveKeyboard() {
    m_pressedByKey = false;
    m_keyboard.hide();
}

} // namespace lumora
