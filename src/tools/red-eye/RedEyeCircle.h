// picRedEye: a pupil of the chosen size that shines in the chosen colour.
#pragma once

#include <QColor>
#include <QWidget>

namespace lumora {

class RedEyeCircle : public QWidget {
    Q_OBJECT

  public:
    static constexpr int twipsPerPixel = 20; ///< width of the circle for a pixel of the radius

    explicit RedEyeCircle(QWidget *parent);

    /// Pixels of the photo.
    void setRadius(int radius);
    /// In the middle and at the edge.
    void setColours(const QColor &bright, const QColor &dark);
    /// The place of the circle, in the middle.
    QRectF circle() const;

  protected:
    void paintEvent(QPaintEvent *event) override;

  private:
    int m_radius = 0;
    QColor m_bright, m_dark;
};

} // namespace lumora
