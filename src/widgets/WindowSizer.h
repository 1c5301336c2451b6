// Lets a window without a system frame be resized with the mouse: a narrow frame of its own.
#pragma once

#include <QObject>

class QWidget;

namespace lumora {

/// The frame shows while the window is neither maximised nor full-screen, and the window's layout stays inside it. The
/// window system does the resizing where it can, else the edge follows the pointer.
class WindowSizer : public QObject {
    Q_OBJECT

  public:
    static constexpr int width = 6; ///< of the frame, pixels

    /// For as long as the window lives.
    static void install(QWidget *window);

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    explicit WindowSizer(QWidget *window);
    void settle();

    QWidget *m_window;
    QList<QWidget *> m_edges;
};

} // namespace lumora
