#include "widgets/ScenePicture.h"

#include "widgets/Theme.h"

#include <QPainter>
#include <QPainterPath>

namespace lumora {

ScenePicture::ScenePicture(const QString &scene, qreal corner, QWidget *parent)
    : QFrame(parent), m_drawing(":/scenes/" + scene + ".svg"), m_corner(corner) {}

void ScenePicture::paintEvent(QPaintEvent *) {
    if (colours::isHighContrast()) { // what is written on a drawing would not be easy to read
        QPainter painter(this);
        paintPanel(painter, rect(), m_corner);
        return;
    }
    const qreal ratio = devicePixelRatioF();
    const QSize pixels = (QSizeF(size()) * ratio).toSize();
    if (m_picture.size() != pixels) {
        m_picture = QPixmap(pixels);
        m_picture.fill(Qt::transparent);
        QPainter painter(&m_picture);
        painter.setRenderHint(QPainter::Antialiasing);
        QPainterPath card;
        card.addRoundedRect(m_picture.rect(), m_corner * ratio, m_corner * ratio);
        painter.setClipPath(card);
        m_drawing.render(&painter, m_picture.rect());
        painter.end();
        m_picture.setDevicePixelRatio(ratio);
    }
    QPainter(this).drawPixmap(0, 0, m_picture);
}

} // namespace lumora
