// The pointer of those who work on the photo without a mouse: a cross that the arrow keys move. CanvasMouse shows it
// for the tools that have a use for it.
#pragma once

#include <QObject>
#include <QPointF>
#include <optional>

class QKeyEvent;
class QPainter;

namespace lumora {

class PhotoView;

/// The direction of an arrow key, one step; null for other keys.
QPoint arrowStep(int key);

class KeyboardPointer : public QObject {
  public:
    /// The view outlives it.
    KeyboardPointer(PhotoView &view, QObject *parent);

    /// Whether that key moves it: an arrow, with Shift ten times as far, with Ctrl by one pixel of the screen.
    static bool isMove(const QKeyEvent &key);
    /// Moves it; the photo scrolls where it would leave the view. The first move shows it at `start` (the view's
    /// pixels) or, without one, in the middle of what is seen of the photo.
    void move(const QKeyEvent &key, std::optional<QPointF> start);
    void hide();

    bool isShown() const { return m_at.has_value(); }
    /// While it is shown, in the view's pixels and in the picture's.
    QPointF inView() const;
    QPointF inPicture() const { return m_at.value_or(QPointF()); }

    void paint(QPainter &painter) const;

  private:
    void scrollTo(QPointF &view);

    PhotoView &m_view;
    std::optional<QPointF> m_at; ///< picture pixels, so that it stays on its place when the photo scrolls
};

} // namespace lumora
