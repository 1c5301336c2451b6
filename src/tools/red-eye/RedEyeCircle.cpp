#include "tools/red-eye/RedEyeCircle.h"

#include "widgets/Theme.h"

#include <QPainter>

namespace lumora {

RedEyeCircle::RedEyeCircle(QWidget *parent) : QWidget(parent) {
    setObjectName("picRedEye");
}

void RedEyeCircle::setRadius(int radius) {
    m_radius = radius;
    update();
}

void RedEyeCircle::setColours(const QColor &bright, const QColor &dark) {
    m_bright = bright;
    m_dark = dark;
    update();
}

QRectF RedEyeCircle::circle() const {
    const qreal size = m_radius * twipsPerPixel / 15.0;
    return {(width() - size) / 2, (height() - size) / 2, size, size};
}

void RedEyeCircle::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colours::line, 2));
    painter.setBrush(colours::paper);
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), buttonCorner, buttonCorner);
    const QRectF eye = circle();
    QRadialGradient glow(eye.center(), qMax(eye.width() / 2, 1.0));
    glow.setColorAt(0, m_bright);
    glow.setColorAt(0.6, m_bright);
    glow.setColorAt(1, m_dark);
    painter.setPen(QPen(colours::ink, 2));
    painter.setBrush(glow);
    painter.drawEllipse(eye);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::white); // the flash
    const qreal glint = eye.width() * 0.16;
    painter.drawEllipse(eye.center() + QPointF(-0.18, -0.2) * eye.width(), glint / 1.4, glint / 1.4);
}

} // namespace lumora
