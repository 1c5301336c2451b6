#include "guide/GuidePictures.h"

#include "widgets/Theme.h"

#include <QDir>
#include <QPainter>
#include <QPainterPath>
#include <QPixmapCache>
#include <QTextDocument>
#include <QTextFormat>

namespace lumora {

namespace {

constexpr int usualIcon = 48; // pixels
constexpr qreal corner = 10;

/// Pages point at pictures from their own folder, which is as deep in every language.
QString pathOf(const QTextFormat &format) {
    return QDir::cleanPath(":/guide/en/" + format.toImageFormat().name());
}

bool isDrawing(const QString &path) {
    return path.endsWith(".svg");
}

QPixmap screenshot(const QString &path) {
    QPixmap picture;
    if (!QPixmapCache::find(path, &picture)) {
        picture = QPixmap(path);
        QPixmapCache::insert(path, picture);
    }
    return picture;
}

/// Scaled once, not each time the page scrolls.
QPixmap screenshotAt(const QString &path, QSize pixels) {
    const QString key = QString("%1 %2").arg(path).arg(pixels.width());
    QPixmap picture;
    if (!QPixmapCache::find(key, &picture)) {
        picture = screenshot(path).scaled(pixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        QPixmapCache::insert(key, picture);
    }
    return picture;
}

} // namespace

QSizeF GuidePictures::intrinsicSize(QTextDocument *page, int, const QTextFormat &format) {
    const QString path = pathOf(format);
    if (isDrawing(path)) {
        const qreal wanted = format.toImageFormat().width();
        return wanted > 0 ? QSizeF(wanted, wanted) : QSizeF(usualIcon, usualIcon);
    }
    const QSizeF natural = QSizeF(screenshot(path).size()) / 2;
    const qreal room = page->pageSize().width() - 2 * page->documentMargin();
    return natural.width() > room && room > 0 ? natural * (room / natural.width()) : natural;
}

void GuidePictures::drawObject(QPainter *painter, const QRectF &place, QTextDocument *, int,
                               const QTextFormat &format) {
    const QString path = pathOf(format);
    const qreal density = painter->device()->devicePixelRatioF();
    if (isDrawing(path)) {
        painter->drawPixmap(place.topLeft(), iconPixmap(path, qRound(place.width()), density));
        return;
    }
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    QPainterPath card;
    card.addRoundedRect(place.adjusted(1, 1, -1, -1), corner, corner);
    painter->save();
    painter->setClipPath(card);
    const QPixmap picture = screenshotAt(path, (place.size() * density).toSize());
    painter->drawPixmap(place, picture, picture.rect());
    painter->restore();
    painter->setPen(QPen(colours::line, 2));
    painter->drawPath(card);
    painter->restore();
}

} // namespace lumora
