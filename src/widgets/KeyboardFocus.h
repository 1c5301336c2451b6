// The ring around the control that has the keyboard, and whether the keyboard or the mouse was used last.
#pragma once

#include <QObject>
#include <QPointer>

class QFocusFrame;
class QPainter;
class QRectF;
class QWidget;

namespace lumora {

/// One for the application, see applyTheme. A key that walks through or presses controls (Tab, arrows, Space, Enter)
/// brings the ring, the next press of the mouse takes it away.
class KeyboardFocus : public QObject {
    Q_OBJECT

  public:
    explicit KeyboardFocus(QObject *parent);

    /// Whether such a key was pressed after the last press of the mouse.
    static bool isUsed();

    /// Paints the ring, a double line with a gap, inside `place`; `corner` is the radius of its outer line in pixels.
    static void paintRing(QPainter &painter, const QRectF &place, qreal corner);
    static constexpr int ringWidth = 6; ///< pixels, both lines and the gap

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    void use(bool keyboard);
    void showRing();

    QPointer<QFocusFrame> m_ring;
};

} // namespace lumora
