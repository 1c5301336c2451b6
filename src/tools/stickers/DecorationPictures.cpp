#include "tools/stickers/DecorationPictures.h"

#include <QPaintDevice>
#include <QPainter>
#include <algorithm>

namespace lumora {

namespace {

constexpr qint64 mostKept = 4'000'000; // pixels of a picture; a larger one is drawn each time, which is rare

Decoration keyOf(Decoration item) {
    if (item.speaker) {
        *item.speaker -= item.centre;
    }
    item.centre = {};
    return item;
}

QRect devicePlace(const Decoration &key, const DecorationShape &shape, double scale) {
    const QTransform place = placeOf(key) * QTransform::fromScale(scale, scale);
    return place.mapRect(shape.bounds).toAlignedRect().adjusted(-1, -1, 1, 1);
}

} // namespace

DecorationPictures::Entry &DecorationPictures::entryOf(const Decoration &item) {
    const Decoration key = keyOf(item);
    auto found = std::ranges::find(m_entries, key, &Entry::key);
    if (found == m_entries.end()) {
        m_entries.push_front({.key = key, .shape = shapeOf(key), .picture = {}, .corner = {}});
        found = m_entries.begin();
    }
    found->used = true;
    return *found;
}

const DecorationShape &DecorationPictures::shape(const Decoration &item) {
    return entryOf(item).shape;
}

void DecorationPictures::draw(Entry &entry, double scale) {
    const QRect place = devicePlace(entry.key, entry.shape, scale);
    entry.scale = scale;
    entry.corner = place.topLeft();
    entry.picture = QImage(place.size(), QImage::Format_ARGB32_Premultiplied);
    if (entry.picture.isNull()) {
        return;
    }
    entry.picture.fill(Qt::transparent);
    QPainter painter(&entry.picture);
    const QTransform toPicture =
        placeOf(entry.key) * QTransform::fromScale(scale, scale) * QTransform::fromTranslate(-place.x(), -place.y());
    paintDecoration(painter, entry.shape, toPicture, m_drawings);
}

void DecorationPictures::paint(QPainter &painter, const Decoration &item, QPointF origin, double scale) {
    Entry &entry = entryOf(item);
    const QPointF centre = origin + item.centre * scale;
    const double density = painter.device()->devicePixelRatioF();
    const QSize size = devicePlace(entry.key, entry.shape, scale * density).size();
    if (qint64(size.width()) * size.height() > mostKept) {
        const QTransform place = placeOf(entry.key) * QTransform::fromScale(scale, scale) *
                                 QTransform::fromTranslate(centre.x(), centre.y());
        paintDecoration(painter, entry.shape, place, m_drawings);
        return;
    }
    if (entry.picture.isNull() || entry.scale != scale * density) {
        draw(entry, scale * density);
        entry.picture.setDevicePixelRatio(density);
    }
    const QPoint corner = (centre * density).toPoint() + entry.corner;
    painter.drawImage(QPointF(corner) / density, entry.picture);
}

void DecorationPictures::dropUnused() {
    m_entries.remove_if([](const Entry &entry) { return !entry.used; });
    for (Entry &entry : m_entries) {
        entry.used = false;
    }
}

} // namespace lumora
