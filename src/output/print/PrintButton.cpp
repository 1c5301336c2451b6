#include "output/print/PrintButton.h"

#include "widgets/Theme.h"

#include <QPainter>
#include <QPainterPath>

namespace lumora {

void PrintButton::setPause(int left, int total) {
    m_left = left;
    m_total = total;
    update();
}

QString PrintButton::pauseText() const {
    constexpr int minute = 60;
    if (m_left <= 0) {
        return {};
    }
    return m_left < minute ? QString::number(m_left)
                           : QStringLiteral("%1:%2").arg(m_left / minute).arg(m_left % minute, 2, 10, QChar('0'));
}

void PrintButton::paintEvent(QPaintEvent *event) {
    PictureButton::paintEvent(event);
    if (m_left <= 0 || m_total <= 0) {
        return;
    }
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF box = QRectF(rect()).adjusted(2, 2, -2, -2);
    QPainterPath shape;
    shape.addRoundedRect(box, buttonCorner, buttonCorner);
    painter.setClipPath(shape);
    QColor level = colours::sky;
    level.setAlpha(90);
    QRectF water = box;
    water.setTop(box.bottom() - box.height() * m_left / m_total);
    painter.fillRect(water, level);
    painter.fillRect(QRectF(water.left(), water.top() - 1, water.width(), 2), colours::sky);
    painter.setClipping(false);

    QFont large = font();
    large.setPixelSize(qRound(box.height() * (m_left < 60 ? 0.42 : 0.34)));
    large.setBold(true);
    QPainterPath number;
    const QFontMetricsF metrics(large);
    const QString text = pauseText();
    number.addText(box.center().x() - metrics.horizontalAdvance(text) / 2,
                   box.center().y() + (metrics.ascent() - metrics.descent()) / 2, large, text);
    painter.strokePath(number, QPen(colours::paper, 4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.fillPath(number, colours::ink);
}

} // namespace lumora
