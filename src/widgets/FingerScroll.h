// Lists, pages and columns that are scrolled by a finger on what they show.
#pragma once

#include <QMouseEvent>
#include <QObject>
#include <QPointF>
#include <QPointer>
#include <memory>
#include <vector>

class QAbstractScrollArea;
class QScroller;
class QWidget;
class QWindow;

namespace lumora {

/// One for the application, see applyTheme. A finger that moves along where there is something to scroll scrolls it,
/// and does not press what it was put on. One that stays a moment, or is lifted, presses. Sliders, and what
/// setDraggable was ever called for (the photo), have the finger to themselves.
class FingerScroll : public QObject {
    Q_OBJECT

  public:
    explicit FingerScroll(QObject *parent);

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

  private:
    enum class Finger {
        Up,       ///< or nothing to scroll
        Waiting,  ///< has pressed nothing yet
        Pressing, ///< has pressed, and may still scroll
        Scrolling
    };

    bool press(QWindow &window, const QMouseEvent &event);
    bool move(const QMouseEvent &event);
    bool release(const QMouseEvent &event);
    void deliverPress();
    void cancelPress();
    void become(Finger finger);
    QScroller &scroller() const;

    Finger m_finger = Finger::Up;
    QPointer<QWindow> m_window;
    QPointer<QAbstractScrollArea> m_area;
    QPointF m_global;                                  ///< of the press
    std::vector<std::unique_ptr<QMouseEvent>> m_press; ///< held back; the second of a double click comes as two events
    int m_timer = 0;
    bool m_sends = false;
};

} // namespace lumora
