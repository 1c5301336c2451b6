// A painted scene with rounded corners, as a background of controls: behind the splash's name, above the launcher's
// buttons, on the empty table.
#pragma once

#include <QFrame>
#include <QPixmap>
#include <QSvgRenderer>

namespace lumora {

class ScenePicture : public QFrame {
    Q_OBJECT

  public:
    /// Fills itself with the drawing ":/scenes/SCENE.svg"; `corner` is the radius of its corners in pixels.
    ScenePicture(const QString &scene, qreal corner, QWidget *parent);

  protected:
    void paintEvent(QPaintEvent *event) override;

  private:
    QSvgRenderer m_drawing;
    qreal m_corner;
    QPixmap m_picture; ///< the drawing at the size it was last painted at
};

} // namespace lumora
