// picRedEye: a red eye of the chosen size.
#pragma once

#include <QWidget>

namespace lumora {

class RedEyeCircle : public QWidget {
    Q_OBJECT

  public:
    static constexpr int twipsPerPixel = 20; ///< width of the circle for a pixel of the radius

    explicit RedEyeCircle(QWidget *parent);

    /// Pixels of the photo.
    void setRadius(int radius);
    /// The place of the circle, in the middle.
    QRectF circle() const;

  protected:
    void paintEvent(QPaintEvent *event) override;

  private:
    int m_radius = 0;
};

} // namespace lumora
