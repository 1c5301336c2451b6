// Lets a window without a system title bar be dragged by one of its own parts.
#pragma once

#include <QObject>
#include <QPoint>

class QWidget;

namespace lumora {

/// Dragging the handle moves the handle's window: the window system does it where it can (as if its own title bar were
/// dragged), else the window follows the pointer. A press alone is left to the handle, which may be double-clicked.
class WindowDragger : public QObject {
    Q_OBJECT

  public:
    /// Makes `handle` drag its window for as long as the handle lives.
    static void install(QWidget *handle);

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    explicit WindowDragger(QWidget *handle);

    QWidget *m_handle;
    bool m_pressed = false;
    bool m_following = false;
    QPoint m_pressedAt;
    QPoint m_grip; ///< from the window's corner to the pointer
};

} // namespace lumora
