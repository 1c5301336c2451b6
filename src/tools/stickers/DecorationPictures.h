// Decorations as the screen shows them, each drawn once for a size: a photo full of stickers follows the pointer.
#pragma once

#include "imaging/decorations/PaintDecoration.h"

#include <QImage>
#include <list>

class QPainter;

namespace lumora {

class DecorationPictures {
  public:
    /// Its shape, kept while it is drawn.
    const DecorationShape &shape(const Decoration &item);

    /// Draws it where the photo's corner is at `origin`, `scale` units of the painter to a picture pixel.
    void paint(QPainter &painter, const Decoration &item, QPointF origin, double scale);
    /// Forgets what has not been asked for since the last call.
    void dropUnused();
    void clear() { m_entries.clear(); }

  private:
    struct Entry {
        Decoration key; ///< with its centre at (0, 0)
        DecorationShape shape;
        double scale = 0; ///< device pixels to a picture pixel, of the picture
        QImage picture;
        QPoint corner; ///< of the picture, in device pixels from the centre
        bool used = true;
    };
    Entry &entryOf(const Decoration &item);
    void draw(Entry &entry, double scale);

    std::list<Entry> m_entries;
    StickerDrawings m_drawings;
};

} // namespace lumora
