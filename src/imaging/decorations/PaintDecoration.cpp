#include "imaging/decorations/PaintDecoration.h"

#include "base/TaskControl.h"
#include "imaging/Picture.h"
#include "imaging/decorations/StickerTable.h"
#include "imaging/kernels/RowBands.h"

#include <QPainter>
#include <QPen>
#include <QSvgRenderer>
#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstring>

namespace lumora {

namespace {

constexpr QSize tileSize(2048, 256); // pixels; Qt paints on pictures of up to 32767 pixels only

struct Placed {
    DecorationShape shape;
    QTransform place;
    QRect bounds; ///< in picture pixels
};

QRect pixelsOf(const QTransform &place, const DecorationShape &shape) {
    return place.mapRect(shape.bounds).toAlignedRect().adjusted(-1, -1, 1, 1); // what is smoothed at the edge
}

/// The tiles that something is drawn on.
std::vector<QRect> tilesOf(QSize photo, const std::vector<Placed> &all) {
    std::vector<QRect> tiles;
    for (int y = 0; y < photo.height(); y += tileSize.height()) {
        for (int x = 0; x < photo.width(); x += tileSize.width()) {
            const QRect tile = QRect(QPoint(x, y), tileSize).intersected(QRect(QPoint(), photo));
            if (std::ranges::any_of(all, [&](const Placed &each) { return each.bounds.intersects(tile); })) {
                tiles.push_back(tile);
            }
        }
    }
    return tiles;
}

QImage copyOf(const QImage &photo) {
    QImage copy = newPicture(photo.width(), photo.height(), photo.format() == QImage::Format_RGB32);
    if (copy.isNull()) {
        return {};
    }
    const std::size_t row = static_cast<std::size_t>(photo.width()) * 4;
    uchar *const target = copy.bits();
    forRowBands(photo.height(), photo.width(), [&](int first, int end) {
        for (int y = first; y < end; ++y) {
            std::memcpy(target + y * copy.bytesPerLine(), photo.constScanLine(y), row);
        }
    });
    return copy;
}

} // namespace

StickerDrawings::StickerDrawings() = default;
StickerDrawings::~StickerDrawings() = default;

QSvgRenderer &StickerDrawings::drawing(int sticker) {
    auto &drawing = m_drawings[sticker];
    if (drawing == nullptr) {
        drawing = std::make_unique<QSvgRenderer>(stickerDrawing(stickers()[static_cast<std::size_t>(sticker)]));
    }
    return *drawing;
}

void paintDecoration(QPainter &painter, const DecorationShape &shape, const QTransform &place,
                     StickerDrawings &drawings) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    if (shape.sticker >= 0) {
        painter.setTransform(place, true);
        drawings.drawing(shape.sticker).render(&painter, shape.box);
    }
    const double scale = std::sqrt(std::abs(place.determinant()));
    for (const DecorationLayer &layer : shape.layers) {
        // A path of its own: Qt keeps what it computes for a path in it, and other threads may draw the same one.
        QPainterPath path =
            place.isIdentity() ? QTransform::fromTranslate(0, 0).map(layer.path) : place.map(layer.path);
        path.setFillRule(Qt::WindingFill);
        painter.setPen(layer.lineWidth > 0
                           ? QPen(layer.line, layer.lineWidth * scale, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin)
                           : QPen(Qt::NoPen));
        painter.setBrush(layer.fill);
        painter.drawPath(path);
    }
    painter.restore();
}

QImage decorated(const QImage &photo, const std::vector<Decoration> &decorations) {
    if (photo.isNull()) {
        return {};
    }
    QImage result = copyOf(photo);
    if (result.isNull()) {
        return {};
    }
    std::vector<Placed> all;
    for (const Decoration &decoration : decorations) {
        Placed placed{shapeOf(decoration), placeOf(decoration), {}};
        placed.bounds = pixelsOf(placed.place, placed.shape);
        all.push_back(std::move(placed));
    }
    const std::vector<QRect> tiles = tilesOf(photo.size(), all);
    uchar *const pixels = result.bits();
    TaskControl *const control = TaskControl::current();
    std::atomic<std::int64_t> done = 0;
    const auto drawTile = [&](const QRect &tile) {
        const qsizetype start = tile.y() * result.bytesPerLine() + tile.x() * qsizetype(4);
        QImage part(pixels + start, tile.width(), tile.height(), result.bytesPerLine(), result.format());
        QPainter painter(&part);
        StickerDrawings drawings;
        const QTransform toTile = QTransform::fromTranslate(-tile.x(), -tile.y());
        for (const Placed &each : all) {
            if (each.bounds.intersects(tile)) {
                paintDecoration(painter, each.shape, each.place * toTile, drawings);
            }
        }
        painter.end();
        if (control != nullptr) {
            control->setProgress(++done, static_cast<std::int64_t>(tiles.size()));
        }
    };
    constexpr int bandEach = 1 << 16; // a tile is enough for a band
    forRowBands(static_cast<int>(tiles.size()), bandEach, [&](int first, int end) {
        for (int i = first; i < end; ++i) {
            drawTile(tiles.at(static_cast<std::size_t>(i)));
        }
    });
    return result;
}

} // namespace lumora
