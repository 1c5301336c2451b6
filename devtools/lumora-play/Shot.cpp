#include "Shot.h"

#include "Controls.h"
#include "Hand.h"
#include "Pointer.h"

#include <QGuiApplication>
#include <QPainter>
#include <QScreen>
#include <QWidget>

namespace lumora::play {

QImage takeShot(const Hand *hand) {
    const QScreen *screen = QGuiApplication::primaryScreen();
    const QRect place = screen->geometry();
    const qreal scale = screen->devicePixelRatio();
    QImage shot((QSizeF(place.size()) * scale).toSize(), QImage::Format_RGB32);
    shot.setDevicePixelRatio(scale);
    shot.fill(QColor(108, 120, 134));
    QPainter painter(&shot);
    for (QWidget *window : openWindows()) {
        const QPoint corner = window->mapToGlobal(QPoint(0, 0)) - place.topLeft();
        if (window->mask().isEmpty()) {
            painter.setClipping(false);
        } else { // grab() takes what a mask hides on the screen
            painter.setClipRegion(window->mask().translated(corner));
        }
        painter.drawPixmap(corner, window->grab());
    }
    if (hand != nullptr) {
        painter.setClipping(false);
        paintPointer(painter, hand->place() - place.topLeft(), hand->isHolding());
    }
    return shot;
}

QImage partOf(const QImage &shot, QRect place) {
    const QPoint corner = QGuiApplication::primaryScreen()->geometry().topLeft();
    const QRectF wanted = place.translated(-corner);
    const qreal scale = shot.devicePixelRatio();
    return shot.copy(QRectF(wanted.topLeft() * scale, wanted.size() * scale).toRect() & shot.rect());
}

} // namespace lumora::play
