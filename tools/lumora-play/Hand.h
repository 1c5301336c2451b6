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

class Hand {
  public:
    /// A click of the left button at a point of the widget, in its pixels. Two clicks never make a double click.
    void click(QWidget &widget, QPoint point);
    /// Press at the first point, move over the others, release at the last.
    void drag(QWidget &widget, const std::vector<QPoint> &points);
    /// Types into whatever has the keyboard in that window.
    void type(QWidget &window, const QString &text);
    void press(QWidget &window, QKeyCombination keys);

    /// True while planned events wait for their turn.
    bool isBusy() const { return !m_planned.empty(); }
    /// Gives the next event to its window; returns only when whatever it opened (a modal window) has closed again. An
    /// event for a window that is gone is dropped.
    void act();

  private:
    void mouse(QWidget &widget, QPoint point, QEvent::Type type);
    void moveTo(QWidget &widget, QPoint point);
    void key(QWidget &window, int key, Qt::KeyboardModifiers modifiers, const QString &text);

    std::deque<std::function<void()>> m_planned;
    int m_clock = 0; ///< milliseconds, the events' own time
    bool m_pressed = false;
};

} // namespace lumora::play
