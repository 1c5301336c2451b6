// The drawing of one frame, and its parts at any size. FrameArtwork puts the parts together.
#pragma once

#include <QImage>
#include <QRectF>
#include <QSize>
#include <QString>
#include <QSvgRenderer>
#include <vector>

namespace lumora {

/// A picture file of a frame around a square. Its groups "layer1" (the lowest), "layer2"... lie on one another like
/// sheets of paper, each with a soft shadow on what lies below it and on the photo.
class FrameDrawing {
  public:
    static constexpr int side = 1000; ///< units from edge to edge

    explicit FrameDrawing(const QString &file);

    /// What lies within `shown` (units) at that size in pixels: straight alpha, transparent where nothing is. A null
    /// picture when memory is refused. One thread at a time.
    QImage part(const QRectF &shown, QSize size);

  private:
    struct Layer {
        QString name;
        QImage shadow;
    };
    void drawLayer(const QString &name, QPainter &painter, const QRectF &shown, const QRectF &target);
    QImage shadowOf(const QString &name);

    QSvgRenderer m_renderer;
    std::vector<Layer> m_layers;
};

} // namespace lumora
