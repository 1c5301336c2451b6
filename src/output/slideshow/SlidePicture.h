// The picture display of the slideshow, XShow1: one picture on a plain ground, fitted and centred.
#pragma once

#include <QElapsedTimer>
#include <QImage>
#include <QWidget>

class QTimer;
class QVariantAnimation;

namespace lumora {

class SlidePicture : public QWidget {
    Q_OBJECT

  public:
    explicit SlidePicture(QWidget *parent);

    void setBackColor(const QColor &colour);
    QColor backColor() const;

    /// Shows the picture (opaque, in device pixels) instead of the one before: within a quarter of a second, or at once
    /// where the desktop asks for less motion. It is scaled only where it does not fit exactly.
    void setPicture(const QImage &picture);
    const QImage &picture() const { return m_picture; }
    /// Pixels of the screen that a picture has.
    QSize room() const;

  Q_SIGNALS:
    /// A click of the left button; never the second half of a double click that began before this was shown.
    void clicked();
    /// The last picture has come on the screen completely; the one before is forgotten.
    void changed();

  protected:
    void paintEvent(QPaintEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;

  private:
    QRect placeOf(const QImage &picture) const;
    void showPointer();

    QImage m_picture;
    QImage m_before; ///< what the picture replaces, until it has
    QVariantAnimation *m_change;
    QTimer *tmrPointer;
    QPoint m_pointer; ///< where it was seen last, in pixels of the screen
    QElapsedTimer m_shown;
    bool m_isPressed = false;
};

} // namespace lumora
