#include "output/slideshow/SlideSign.h"

#include "widgets/Accessibility.h"
#include "widgets/Motion.h"

#include <QAccessible>
#include <QPainter>
#include <QPainterPath>
#include <QVariantAnimation>
#include <algorithm>

namespace lumora {

namespace {

constexpr int visibleTime = 1000; // milliseconds
constexpr double fadeFrom = 0.7;  // share of that time after which the sign grows faint
constexpr int smallest = 96;      // pixels
constexpr int largest = 240;      // pixels

} // namespace

SlideSign::SlideSign(QWidget *parent) : QWidget(parent), m_fade(new QVariantAnimation(this)) {
    setAccessibleRole(*this, QAccessible::StaticText);
    setObjectName("picSign");
    setAttribute(Qt::WA_TransparentForMouseEvents);
    m_fade->setDuration(visibleTime);
    m_fade->setStartValue(0.0);
    m_fade->setEndValue(1.0);
    connect(m_fade, &QVariantAnimation::valueChanged, this, qOverload<>(&QWidget::update));
    connect(m_fade, &QVariantAnimation::finished, this, &QWidget::hide);
    hide();
}

void SlideSign::flash(Kind kind, const QString &text) {
    m_kind = kind;
    const QRect room = parentWidget()->rect();
    const int side = std::clamp(std::min(room.width(), room.height()) / 4, smallest, largest);
    QRect place(0, 0, side, side);
    place.moveCenter(room.center());
    setGeometry(place);
    setAccessibleName(text);
    m_fade->stop();
    show();
    raise();
    m_fade->start();
    QAccessibleEvent said(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&said);
}

void SlideSign::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double time = m_fade->currentValue().toDouble();
    painter.setOpacity(motionWanted() ? std::min(1.0, (1 - time) / (1 - fadeFrom)) : 1.0);
    painter.scale(width() / 100.0, height() / 100.0);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0, 0, 0, 170)); // white on it can be seen on any photo
    painter.drawEllipse(QPointF(50, 50), 49, 49);
    painter.setBrush(Qt::white);
    if (m_kind == Kind::Pause) {
        painter.drawRoundedRect(QRectF(32, 28, 13, 44), 4, 4);
        painter.drawRoundedRect(QRectF(55, 28, 13, 44), 4, 4);
    } else {
        QPainterPath triangle(QPointF(40, 30));
        triangle.lineTo(72, 50);
        triangle.lineTo(40, 70);
        triangle.closeSubpath();
        painter.setPen(QPen(Qt::white, 6, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter.drawPath(triangle);
    }
}

} // namespace lumora
