// The drawing of one frame, and its parts at any size. FrameArtwork puts the parts together.
#pragma once

#include <QImage>
#include <QRectF>
#include <QSize>
#include <QString>
#include <QSvgRenderer>
#include <memory>
#include <mutex>
#include <vector>

namespace lumora {

/// A picture file of a frame around a square. Its groups "layer1" (the lowest), "layer2"... lie on one another like
/// sheets of paper, each with a soft shadow on what lies below it and on the photo.
class FrameDrawing {
  public:
    static constexpr int side = 1000; ///< units from edge to edge

    explicit FrameDrawing(const QString &file);

    /// What lies within `shown` (units) at that size in pixels: straight alpha, transparent where nothing is. A null
    /// picture when memory is refused. Several threads may ask at once.
    QImage part(const QRectF &shown, QSize size);

  private:
    struct Layer {
        QString name;
        QImage shadow;
    };
    /// The drawing, read from its file, for one thread: a renderer that nobody uses now, or a new one.
    std::unique_ptr<QSvgRenderer> takeRenderer();
    void giveBack(std::unique_ptr<QSvgRenderer> renderer);

    QString m_file;
    std::mutex m_mutex;
    std::vector<std::unique_ptr<QSvgRenderer>> m_idle; ///< guarded by m_mutex
    std::vector<Layer> m_layers;
};

} // namespace lumora
