// The base of Lumora's own small windows: no system frame, a title strip to drag them by, rounded paper, a shadow.
#pragma once

#include <QAbstractButton>
#include <QDialog>
#include <QPointer>

class QScrollArea;
class QVBoxLayout;

namespace lumora {

class TitleStrip;

/// Modal when run with exec(). As large as its layout likes and the screen allows; is centred over its owner, or on
/// the screen without one, and wholly on the screen. Esc rejects; Enter presses the default button. The title strip
/// shows the window's title and the other way round. On an X server without a compositor, where a translucent window
/// would be black, a line replaces the shadow.
class BorderlessDialog : public QDialog {
    Q_OBJECT

  public:
    /// `name` becomes the object name; `owner` may be null.
    BorderlessDialog(const QString &name, QWidget *owner);

    TitleStrip *picTBar() const { return m_strip; }
    /// Where the window's own controls go. They scroll where the screen is too small for them.
    QVBoxLayout *body() const { return m_body; }
    /// Adds the row of buttons that close the window, below the others; it stays in view when those scroll.
    void addFoot(QLayout *answers);
    /// The button that Enter presses wherever the focus is, unless it is on another button.
    void setDefaultButton(QAbstractButton *button) { m_defaultButton = button; }

  protected:
    void showEvent(QShowEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void changeEvent(QEvent *event) override;

  private:
    QRect surface() const;
    void settle();
    void growSoon();
    void grow();
    /// Returns the width of the scroll bar, in pixels.
    int makeScroll();

    bool m_translucent;
    TitleStrip *m_strip;
    QVBoxLayout *m_body;
    QLayout *m_answers = nullptr;
    QScrollArea *m_area = nullptr; ///< around the body, where the screen is too small for it
    QPointer<QAbstractButton> m_defaultButton;
    QPoint m_centre;          ///< of the window, while m_isGrowing
    bool m_isGrowing = false; ///< grow() is about to be called
};

} // namespace lumora
