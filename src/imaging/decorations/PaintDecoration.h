// Draws decorations: on the screen, and into the photo at its own resolution.
#pragma once

#include "imaging/decorations/Decoration.h"

#include <QImage>
#include <map>
#include <memory>

class QPainter;
class QSvgRenderer;

namespace lumora {

/// The drawings of the stickers, read when they are first asked for. One thread uses it.
class StickerDrawings {
  public:
    StickerDrawings();
    ~StickerDrawings();
    QSvgRenderer &drawing(int sticker);

  private:
    std::map<int, std::unique_ptr<QSvgRenderer>> m_drawings;
};

/// Draws a shape; `place` leads from its coordinates to the painter's and keeps proportions. Several threads may draw
/// the same shape.
void paintDecoration(QPainter &painter, const DecorationShape &shape, const QTransform &place,
                     StickerDrawings &drawings);

/// The photo with the decorations on it, the first one lowest, drawn at its own resolution in tiles on all processors.
/// Pixels that no decoration covers stay as they are. Tells the current TaskControl how far it is; what it gives after
/// that was cancelled is incomplete. A null picture without a photo and when memory is refused.
QImage decorated(const QImage &photo, const std::vector<Decoration> &decorations);

} // namespace lumora
