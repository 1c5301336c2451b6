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

/// Which layers of a drawing, by their numbers; all of them unless said otherwise.
struct FrameLayers {
    int first = 1;
    int end = 1000; ///< one after the last
};

/// The resolution that shadows are kept at: Small is enough while the drawing's side is shorter than 300 pixels.
enum class FrameShadows { Small, Large };

/// A picture file of a frame around a square. Its groups "layer1" (the lowest), "layer2"... are stacked like sheets of
/// paper, each with a soft shadow on the layers below it and on the photo.
class FrameDrawing {
  public:
    static constexpr int side = 1000; ///< units from edge to edge

    FrameDrawing(const QString &file, FrameShadows shadows);

    /// Renders the part inside `shown` (units; also beyond the edges) of some layers at that size in pixels: straight
    /// alpha, transparent where nothing is drawn. Returns a null picture when memory allocation fails. Thread-safe.
    QImage part(FrameLayers layers, const QRectF &shown, QSize size);

  private:
    struct Layer {
        QString name;
        QRectF bounds; ///< units
        QImage shadow;
    };
    /// The drawing, read from its file, for one thread: an idle renderer, or a new one.
    std::unique_ptr<QSvgRenderer> takeRenderer();
    void giveBack(std::unique_ptr<QSvgRenderer> renderer);

    QString m_file;
    std::mutex m_mutex;
    std::vector<std::unique_ptr<QSvgRenderer>> m_idle; ///< guarded by m_mutex
    std::vector<Layer> m_layers;
};

} // namespace lumora
