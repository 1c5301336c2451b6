// The hand on mouse and keyboard. It plans events and gives them to the window system's queue one at a time, so that
// grabs, hover, shortcuts and modal windows take them the way they take a person's.
#pragma once

#include <QEvent>
#include <QKeySequence>
#include <QPoint>
#include <deque>
#include <functional>
#include <vector>

class QWidget;

namespace lumora::play {

/// Which mouse button the hand uses, and the keys that it holds meanwhile.
struct Grip {
    Qt::MouseButton button = Qt::LeftButton;
    Qt::KeyboardModifiers modifiers = Qt::NoModifier;
};

class Hand {
  public:
    /// A click at a point of the widget, in its pixels. Two clicks never make a double click.
    void click(QWidget &widget, QPoint point, Grip grip = {});
    void doubleClick(QWidget &widget, QPoint point);
    /// Press at the first point, move over the others, release at the last.
    void drag(QWidget &widget, const std::vector<QPoint> &points, Grip grip = {});
    /// Turns the wheel by so many notches, away from the user where positive.
    void wheel(QWidget &widget, QPoint point, int notches, Qt::KeyboardModifiers modifiers);
    /// Types into whatever has the keyboard in that window.
    void type(QWidget &window, const QString &text);
    void press(QWidget &window, QKeyCombination keys);
    /// Presses a key until letGo.
    void hold(QWidget &window, Qt::Key key) { keyEvent(window, QEvent::KeyPress, key, Qt::NoModifier, {}); }
    void letGo(QWidget &window, Qt::Key key) { keyEvent(window, QEvent::KeyRelease, key, Qt::NoModifier, {}); }

    /// Moves the pointer there and presses nothing.
    void point(QWidget &widget, QPoint place);
    /// Does nothing for that time; needs a calm pace, without one it takes no time.
    void rest(int milliseconds);
    /// A pace that a child can follow: the pointer glides, rests before a click and after it. One planned event is one
    /// frame then, and it is for the caller to give the next one a frame later. 0 is the quick pace again.
    void setPace(int framesPerSecond) { m_framesPerSecond = framesPerSecond; }

    /// The pointer's place on the screen, and whether it holds a button down.
    QPoint place() const { return m_place; }
    bool isHolding() const { return m_holds; }

    /// True while planned events wait for their turn.
    bool isBusy() const { return !m_planned.empty(); }
    /// Gives the next event to its window; returns only when whatever it opened (a modal window) has closed again. An
    /// event for a window that is gone is dropped.
    void act();

  private:
    void mouse(QWidget &widget, QPoint point, QEvent::Type type, Grip grip = {});
    void moveTo(QWidget &widget, QPoint point);
    void glideTo(QWidget &widget, QPoint point);
    bool isCalm() const { return m_framesPerSecond > 0; }
    void pressAndRelease(QWidget &widget, QPoint point, Grip grip);
    void keyEvent(QWidget &window, QEvent::Type type, int key, Qt::KeyboardModifiers modifiers, const QString &text);
    void key(QWidget &window, int key, Qt::KeyboardModifiers modifiers, const QString &text);

    std::deque<std::function<void()>> m_planned;
    int m_clock = 0; ///< milliseconds, the events' own time
    Qt::MouseButton m_held = Qt::NoButton;
    int m_framesPerSecond = 0; ///< of the calm pace
    QPoint m_plannedPlace;     ///< where the last planned event leaves the pointer
    QPoint m_place;
    bool m_holds = false;
};

} // namespace lumora::play
