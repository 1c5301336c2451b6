#include "Hand.h"

#include <QCoreApplication>
#include <QPointer>
#include <QTest>
#include <QWheelEvent>
#include <QWidget>
#include <QWindow>
#include <algorithm>
#include <cmath>

namespace lumora::play {

namespace {

constexpr int betweenEvents = 8;    // milliseconds of the events' own time
constexpr int betweenClicks = 2000; // more than any desktop's double-click time
constexpr int stepsOfADrag = 8;     // moves between two points, as a hand makes many

// Of the calm pace: pixels a frame at most, and milliseconds.
constexpr double glideSpeed = 64;
constexpr double dragSpeed = 24;
constexpr int beforePress = 350;
constexpr int whilePressed = 300;
constexpr int afterRelease = 600;

double distance(QPointF way) {
    return std::hypot(way.x(), way.y());
}

} // namespace

void Hand::act() {
    const std::function<void()> next = std::move(m_planned.front());
    m_planned.pop_front(); // before it runs: a nested event loop goes on with the one after it
    next();
}

void Hand::mouse(QWidget &widget, QPoint point, QEvent::Type type, Grip grip) {
    const QPointer<QWindow> window = widget.window()->windowHandle();
    const QPoint inWindow = widget.mapTo(widget.window(), point);
    const QPoint onScreen = widget.mapToGlobal(point);
    const bool isMove = type == QEvent::MouseMove;
    m_clock += betweenEvents;
    if (!isMove) {
        m_held = type == QEvent::MouseButtonPress ? grip.button : Qt::NoButton;
    }
    m_plannedPlace = onScreen;
    m_planned.emplace_back([this, window, inWindow, onScreen, type, isMove, grip, held = m_held, time = m_clock] {
        m_place = onScreen;
        m_holds = held != Qt::NoButton;
        if (window) {
            qt_handleMouseEvent(window, inWindow, onScreen, held, isMove ? Qt::NoButton : grip.button, type,
                                grip.modifiers, time);
        }
    });
}

void Hand::rest(int milliseconds) {
    for (int frames = milliseconds * m_framesPerSecond / 1000; frames > 0; --frames) {
        m_planned.emplace_back([] {});
    }
}

/// Starts and ends slowly, as a hand does.
void Hand::glideTo(QWidget &widget, QPoint point) {
    const QPointF start = m_plannedPlace;
    const QPointF way = widget.mapToGlobal(point) - start;
    const int frames = std::max(5, static_cast<int>(distance(way) / glideSpeed) + 3);
    for (int frame = 1; frame < frames; ++frame) {
        const double time = static_cast<double>(frame) / frames;
        const QPointF place = start + way * (time * time * (3 - 2 * time));
        mouse(widget, widget.mapFromGlobal(place.toPoint()), QEvent::MouseMove);
    }
}

void Hand::point(QWidget &widget, QPoint place) {
    moveTo(widget, place);
    rest(beforePress);
}

void Hand::moveTo(QWidget &widget, QPoint point) {
    if (isCalm()) {
        glideTo(widget, point);
    }
    // The first move brings the pointer into the window, the second onto the control: hover needs both.
    mouse(widget, point + QPoint(1, 0), QEvent::MouseMove);
    mouse(widget, point, QEvent::MouseMove);
}

void Hand::pressAndRelease(QWidget &widget, QPoint point, Grip grip) {
    rest(beforePress);
    mouse(widget, point, QEvent::MouseButtonPress, grip);
    rest(whilePressed);
    mouse(widget, point, QEvent::MouseButtonRelease, grip);
    rest(afterRelease);
}

void Hand::click(QWidget &widget, QPoint point, Grip grip) {
    m_clock += betweenClicks;
    moveTo(widget, point);
    pressAndRelease(widget, point, grip);
}

void Hand::doubleClick(QWidget &widget, QPoint point) {
    click(widget, point);
    pressAndRelease(widget, point, {});
}

void Hand::drag(QWidget &widget, const std::vector<QPoint> &points, Grip grip) {
    m_clock += betweenClicks;
    moveTo(widget, points.front());
    rest(beforePress);
    mouse(widget, points.front(), QEvent::MouseButtonPress, grip);
    rest(whilePressed);
    for (std::size_t index = 1; index < points.size(); ++index) {
        const QPointF way = points[index] - points[index - 1];
        const int steps = isCalm() ? static_cast<int>(distance(way) / dragSpeed) + 1 : stepsOfADrag;
        for (int step = 1; step <= steps; ++step) {
            mouse(widget, points[index - 1] + (way * step / steps).toPoint(), QEvent::MouseMove, grip);
        }
    }
    mouse(widget, points.back(), QEvent::MouseButtonRelease, grip);
    rest(afterRelease);
}

void Hand::wheel(QWidget &widget, QPoint point, int notches, Qt::KeyboardModifiers modifiers) {
    moveTo(widget, point);
    const QPointF inWindow = widget.mapTo(widget.window(), point);
    const QPointF onScreen = widget.mapToGlobal(point);
    const QPoint turn(0, notches * QWheelEvent::DefaultDeltasPerStep);
    m_planned.emplace_back(
        [window = QPointer<QWindow>(widget.window()->windowHandle()), inWindow, onScreen, turn, modifiers] {
            if (window) {
                QWheelEvent event(inWindow, onScreen, {}, turn, Qt::NoButton, modifiers, Qt::NoScrollPhase, false);
                QCoreApplication::sendEvent(window, &event); // Qt's test support has no way in for wheels
            }
        });
}

void Hand::keyEvent(QWidget &window, QEvent::Type type, int key, Qt::KeyboardModifiers modifiers, const QString &text) {
    m_planned.emplace_back([target = QPointer<QWindow>(window.windowHandle()), type, key, modifiers, text] {
        if (target) {
            qt_handleKeyEvent(target, type, key, modifiers, text);
        }
    });
}

void Hand::key(QWidget &window, int key, Qt::KeyboardModifiers modifiers, const QString &text) {
    keyEvent(window, QEvent::KeyPress, key, modifiers, text);
    keyEvent(window, QEvent::KeyRelease, key, modifiers, text);
}

void Hand::type(QWidget &window, const QString &text) {
    for (const QChar character : text) {
        const bool ascii = character.unicode() >= 0x20 && character.unicode() < 0x7f;
        const int code = ascii ? QTest::asciiToKey(character.toLatin1()) : Qt::Key_unknown;
        key(window, code, character.isUpper() ? Qt::ShiftModifier : Qt::NoModifier, character);
    }
}

void Hand::press(QWidget &window, QKeyCombination keys) {
    const bool types = (keys.keyboardModifiers() & ~Qt::ShiftModifier) == Qt::NoModifier && keys.key() < Qt::Key_Escape;
    const QString text = types ? QString(QChar(keys.key())) : QString();
    const bool isShifted = (keys.keyboardModifiers() & Qt::ShiftModifier) != 0;
    key(window, keys.key(), keys.keyboardModifiers(), isShifted ? text : text.toLower());
}

} // namespace lumora::play
