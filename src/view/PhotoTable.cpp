#include "view/PhotoTable.h"

#include "base/Colours.h"
#include "imaging/Scale.h"

#include <QPainter>
#include <QPainterPath>

namespace lumora {

namespace {

constexpr int tileSize = 16; // painter's units; both patterns repeat after that
constexpr int shadowWidth = 10;
constexpr int shadowDrop = 3;
constexpr QRgb hatchLine = qRgb(200, 200, 200);
constexpr int quietness = 96; // of 255: seen, and never taken for a transparent photo

QPixmap emptyTile(qreal devicePixels, QRgb colour) {
    QPixmap tile((QSizeF(tileSize, tileSize) * devicePixels).toSize());
    tile.setDevicePixelRatio(devicePixels);
    tile.fill(QColor(colour));
    return tile;
}

QPixmap hatchingTile(qreal devicePixels) {
    QPixmap tile = emptyTile(devicePixels, colours::paper.rgb());
    QPainter painter(&tile);
    painter.setRenderHint(QPainter::Antialiasing);
    QColor line(hatchLine);
    line.setAlpha(quietness);
    painter.setPen(QPen(line, 0.75));
    // Drawn beyond the tile as well, so that the lines meet at its corners without a gap.
    for (int shift = -tileSize; shift <= tileSize; shift += tileSize) {
        painter.drawLine(QPointF(shift - tileSize, -tileSize), QPointF(shift + 2 * tileSize, 2 * tileSize));
        painter.drawLine(QPointF(shift - tileSize, 2 * tileSize), QPointF(shift + 2 * tileSize, -tileSize));
    }
    return tile;
}

QPixmap checksTile(qreal devicePixels) {
    QPixmap tile = emptyTile(devicePixels, qRgb(255, 255, 255));
    QPainter painter(&tile);
    const QSizeF half(tileSize / 2.0, tileSize / 2.0);
    painter.fillRect(QRectF(QPointF(0, 0), half), QColor(221, 221, 221));
    painter.fillRect(QRectF(QPointF(tileSize / 2.0, tileSize / 2.0), half), QColor(221, 221, 221));
    return tile;
}

void paintShadow(QPainter &painter, const QRectF &photo) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    QColor ink = colours::ink;
    ink.setAlpha(12);
    // Many thin layers, each a little larger, add up to a soft edge.
    for (int grown = shadowWidth; grown > 0; grown -= 2) {
        painter.setBrush(ink);
        painter.drawRoundedRect(photo.adjusted(-grown, -grown, grown, grown).translated(0, shadowDrop), grown, grown);
    }
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.fillRect(photo.adjusted(-1, -1, 1, 1), colours::line);
}

} // namespace

void PhotoTable::makeTiles(qreal devicePixels) {
    if (m_hatching.isNull() || !qFuzzyCompare(m_hatching.devicePixelRatio(), devicePixels) ||
        m_paper != colours::paper) {
        m_paper = colours::paper;
        m_hatching = hatchingTile(devicePixels);
        m_checks = checksTile(devicePixels);
    }
}

void PhotoTable::paintTable(QPainter &painter, const QRectF &area, const QRectF &photo, QPointF origin,
                            qreal devicePixels) {
    if (photo.contains(area)) {
        return;
    }
    makeTiles(devicePixels);
    painter.save();
    QPainterPath outside;
    outside.addRect(area);
    QPainterPath inside;
    inside.addRect(photo);
    painter.setClipPath(outside.subtracted(inside), Qt::IntersectClip);
    painter.drawTiledPixmap(area, m_hatching, area.topLeft() - origin);
    if (!photo.isEmpty()) {
        paintShadow(painter, photo);
    }
    painter.restore();
}

void PhotoTable::paintChecks(QPainter &painter, const QRectF &area, QPointF origin, qreal devicePixels) {
    makeTiles(devicePixels);
    painter.drawTiledPixmap(area, m_checks, area.topLeft() - origin);
}

QPixmap smallPhoto(const QImage &photo, QSize room, qreal devicePixels, Beneath beneath) {
    if (photo.isNull()) {
        return {};
    }
    const QSize size = photo.size().scaled(room * devicePixels, Qt::KeepAspectRatio).expandedTo({1, 1});
    const QImage small = scaled(photo, size.width(), size.height());
    QPixmap pixmap(small.size());
    pixmap.setDevicePixelRatio(devicePixels);
    pixmap.fill(Qt::white);
    QPainter painter(&pixmap);
    if (beneath == Beneath::Checks && photo.hasAlphaChannel()) {
        PhotoTable().paintChecks(painter, QRectF({}, pixmap.deviceIndependentSize()), {}, devicePixels);
    }
    painter.drawImage(QRectF({}, pixmap.deviceIndependentSize()), small);
    return pixmap;
}

} // namespace lumora
