// A tool's panel that slides up from the bottom of the main window.
#pragma once

#include <QTimer>
#include <QWidget>

class QLabel;
class QHBoxLayout;
class QScrollArea;
class QVBoxLayout;

namespace lumora {

class PictureButton;

/// A child of the main window, hidden below its bottom edge until slideIn(). It moves 500 twips a tick, about sixty
/// ticks a second, until its lower edge is at the lower edge of its area; where the desktop asks for less motion it is
/// there at once. It is as tall as its contents and as wide as its area; where the window is narrow it covers the rest
/// of its width, and its controls scroll if that is not enough. Its title drags it.
class SlidingPanel : public QWidget {
    Q_OBJECT

  public:
    static constexpr int stepTwips = 500; ///< a tick
    static constexpr int interval = 16;   ///< milliseconds between ticks

    /// `closeButtonName` becomes the object name of the panel's close button.
    SlidingPanel(const QString &name, const QString &closeButtonName, QWidget *window);

    QLabel *titleLabel() const { return m_title; }
    PictureButton *closeButton() const { return m_close; }
    /// Width and height in pixels that its buttons have at least.
    void setButtonSide(int side);
    /// A large button beside the title that is held to see the photo as it was; its text is the caller's.
    void addCompareButton();
    /// Null without one.
    PictureButton *compareButton() const { return m_compare; }
    /// Where the panel's own controls go.
    QVBoxLayout *body() const { return m_body; }
    /// The window's part that the panel slides over, in the window's pixels; the panel is aligned with its lower edge.
    /// At first the whole window.
    void setArea(const QRect &area);

    /// Starts to slide in; a panel that is up stays where it is.
    void slideIn();
    /// Hides the panel below the window at once.
    void slideOut();
    /// True from slideIn() until slideOut().
    bool isOpen() const { return m_open; }
    bool isSliding() const { return m_timer.isActive(); }

  Q_SIGNALS:
    /// The panel has reached its place.
    void opened();
    /// The panel was closed: by its button, by Esc or by slideOut().
    void closed();
    /// After closed(): it was the user who closed it, by its button or by Esc.
    void left();

  protected:
    void paintEvent(QPaintEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

  private:
    int targetTop() const;
    void place(int top);
    void makeScroll();
    void tick();

    QRect m_area;
    QLabel *m_title;
    PictureButton *m_close;
    PictureButton *m_compare = nullptr;
    QHBoxLayout *m_head;
    QVBoxLayout *m_body;
    QScrollArea *m_scroll = nullptr; ///< around the body, in a window too narrow for it
    QTimer m_timer;
    bool m_open = false;
};

} // namespace lumora
