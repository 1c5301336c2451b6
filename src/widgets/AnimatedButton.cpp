#include "widgets/AnimatedButton.h"

#include "widgets/Theme.h"

#include <QPainter>
#include <cmath>
#include <numbers>

namespace lumora {

namespace {

constexpr double hop = 0.08;                  // of the drawing's height
constexpr double thinRing = 3, thickRing = 7; // pixels

} // namespace

void AnimatedButton::setLoop(const QString &name) {
    m_loop = name;
    m_frame = 1;
    update();
}

void AnimatedButton::setFrame(int number) {
    if (number < 1 || number > frames) {
        return;
    }
    m_frame = motionWanted() ? number : 1;
    update();
}

void AnimatedButton::setInviting(bool inviting) {
    m_inviting = inviting;
    update();
}

double AnimatedButton::swing() const {
    return (1 - std::cos(2 * std::numbers::pi * (m_frame - 1) / frames)) / 2;
}

QPixmap AnimatedButton::currentPicture(QSize size, qreal devicePixelRatio) const {
    const QString frameFile = QString(":/loops/%1-%2.svg").arg(m_loop).arg(m_frame);
    const int side = qMin(size.width(), size.height());
    QPixmap drawing = iconPixmap(frameFile, side, devicePixelRatio);
    if (!isInviting() || m_frame == 1) {
        return drawing;
    }
    // As much higher as the hop, on the ground in the loop's first frame.
    const int height = qRound(side * hop * swing());
    QPixmap raised(QSize(side, side + 2 * height) * devicePixelRatio);
    raised.setDevicePixelRatio(devicePixelRatio);
    raised.fill(Qt::transparent);
    QPainter(&raised).drawPixmap(0, 0, drawing);
    return raised;
}

void AnimatedButton::paintEvent(QPaintEvent *event) {
    PictureButton::paintEvent(event);
    if (!isInviting()) {
        return;
    }
    const double wide = thinRing + (thickRing - thinRing) * swing();
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colours::sun, wide));
    painter.drawRoundedRect(QRectF(rect()).adjusted(wide / 2, wide / 2, -wide / 2, -wide / 2), buttonCorner,
                            buttonCorner);
}

} // namespace lumora
