// Lets a window without a system title bar be dragged by one of its own parts.
#pragma once

#include <QObject>
#include <QPoint>

class QWidget;

namespace lumora {

/// A left press on the handle moves the handle's window: the window system does it where it can (as if its own title
/// bar were dragged), else the window follows the pointer.
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
    bool m_following = false;
    QPoint m_grip; ///< from the window's corner to the pointer
};

} // namespace lumora
