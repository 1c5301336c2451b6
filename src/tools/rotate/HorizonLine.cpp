#include "tools/rotate/HorizonLine.h"

#include "widgets/Theme.h"

#include <QPainter>
#include <cmath>
#include <numbers>
#include <utility>

namespace lumora {

bool HorizonLine::isLongEnough() const {
    const QPointF by = to - from;
    return std::hypot(by.x(), by.y()) >= shortest;
}

double HorizonLine::straightening() const {
    const QPointF by = to - from;
    return -std::remainder(std::atan2(by.y(), by.x()) * 180 / std::numbers::pi, 90.0);
}

void HorizonLine::paint(QPainter &painter) const {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    for (const auto &[colour, width] :
         {std::pair(colours::ink, 9.0), std::pair(QColor(Qt::white), 6.0), std::pair(colours::coral, 3.5)}) {
        painter.setPen(QPen(colour, width, Qt::SolidLine, Qt::RoundCap));
        painter.drawLine(from, to);
    }
    painter.setPen(QPen(colours::ink, 2));
    painter.setBrush(colours::sun);
    for (const QPointF &end : {from, to}) {
        painter.drawEllipse(end, 9, 9);
    }
    painter.restore();
}

} // namespace lumora
