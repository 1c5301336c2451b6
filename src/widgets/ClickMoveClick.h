// For whoever cannot hold a button down while moving: a click takes what would be dragged, and the next click lets it
// go.
#pragma once

#include <QEvent>
#include <QObject>
#include <QPointF>
#include <QPointer>
#include <optional>

class QMouseEvent;
class QWidget;
class QWindow;

namespace lumora {

/// While it is on, a press and a release of the left button at the same place become a button that is held down until
/// the next click, wherever something can be dragged: the handles of sliders and scroll bars, and the widgets of
/// setDraggable. Esc puts it back to where it was taken. A true drag stays one.
class ClickMoveClick : public QObject {
    Q_OBJECT

  public:
    /// Off, nothing is installed; what is held is let go.
    static void setOn(bool on);
    /// Whether a click holds something now. The window system knows of no button then, so it cannot drag a window.
    static bool isHolding();

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    explicit ClickMoveClick(QObject *parent);
    bool press(QWindow &window, const QMouseEvent &event);
    bool release(const QMouseEvent &event);
    bool isEsc(QEvent &event) const;
    void send(QEvent::Type type, QPointF global);
    void letGo();

    QPointer<QWindow> m_window;  ///< of the press
    QPointer<QWidget> m_pressed; ///< what was pressed and may be draggable
    QPointF m_pressedAt, m_at;   ///< global
    bool m_onHandle = false;     ///< of a slider, when it was pressed
    bool m_holds = false;
    bool m_ends = false; ///< the second click's button is down
    bool m_sends = false;
};

/// Says whether the pointer can drag something on that widget. The photo's view says it with each press.
void setDraggable(QWidget &widget, bool draggable);
/// What was said of that very widget.
std::optional<bool> isDraggable(const QWidget &widget);

} // namespace lumora
