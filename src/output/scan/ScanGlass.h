// The scanner from above: its glass, what lies on it once the scanner has looked, and the frame round what is wanted.
#pragma once

#include <QImage>
#include <QWidget>

namespace lumora {

/// Lengths on the glass are in the scanner's unit, most often millimetres, from the glass's top left corner. The frame
/// is drawn, moved and sized with the mouse; arrow keys move it, with Shift they size it.
class ScanGlass : public QWidget {
    Q_OBJECT

  public:
    explicit ScanGlass(QWidget *parent = nullptr);

    /// An empty glass of that size. Where the scanner has no area to choose, there is no frame.
    void setGlass(const QSizeF &size, bool hasArea);
    QSizeF glass() const { return m_glass; }
    /// Cut to the glass; all of it at first.
    void setArea(const QRectF &area);
    QRectF area() const { return m_area; }

    /// What the scanner has seen so far, from the top; `share` of the glass's height, 0 to 1. A null picture empties
    /// it.
    void showPreview(const QImage &picture, double share);
    /// A sentence on the empty glass.
    void setMessage(const QString &text);
    /// The lamp moves to and fro: the scanner is at work, and nobody knows how far.
    void setWaiting(bool waiting);

    /// As large as the screen has room for.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return {300, 320}; }

  Q_SIGNALS:
    /// The user has changed the frame.
    void areaDrawn();

  protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

  private:
    /// What the pointer has hold of: an edge or a corner, the whole frame, or nothing (a new frame is drawn).
    struct Grip {
        int left = 0, top = 0, right = 0, bottom = 0; ///< 1: this edge moves
        bool isNone() const { return left + top + right + bottom == 0; }
    };
    QRectF glassPlace() const;
    QRectF areaPlace() const;
    QPointF toGlass(QPointF at) const;
    Grip gripAt(QPointF at) const;
    void showCursor(const Grip &grip);
    void paintBody(QPainter &painter, const QRectF &glass) const;
    void paintFrame(QPainter &painter, const QRectF &glass) const;
    void paintMessage(QPainter &painter, const QRectF &glass) const;
    void paintLamp(QPainter &painter, const QRectF &glass) const;

    QSizeF m_glass{210, 297};
    bool m_hasArea = false;
    QRectF m_area;
    QImage m_preview;
    double m_share = 0;
    QString m_message;
    int m_timer = 0;
    int m_step = 0;

    bool m_pressed = false;
    bool m_drawing = false; ///< a new frame
    Grip m_grip;
    QPointF m_from;   ///< where it was pressed, on the glass
    QRectF m_atPress; ///< the area then
};

} // namespace lumora
