#include "tools/adjust/AdjustSlider.h"

#include "widgets/Theme.h"

#include <QPainter>
#include <QStyleOptionSlider>

namespace lumora {

namespace {

constexpr qreal barHeight = 8; // pixels, as the style's own
constexpr qreal notchHeight = 18;

} // namespace

AdjustSlider::AdjustSlider(const QString &name, int most, QWidget *parent) : QSlider(Qt::Horizontal, parent) {
    setObjectName(name);
    setRange(-most, most);
    setPageStep(most / 10);
    // The style's own bar grows from the left.
    setStyleSheet("QSlider::groove:horizontal, QSlider::sub-page:horizontal { background: transparent; }");
}

void AdjustSlider::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    QStyleOptionSlider option;
    initStyleOption(&option);
    option.subControls = QStyle::SC_SliderHandle;
    const QRectF handle = style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, this);
    const QPointF middle = QRectF(rect()).center();
    painter.setBrush(colours::line);
    painter.drawRoundedRect(QRectF(0, middle.y() - barHeight / 2, width(), barHeight), barHeight / 2, barHeight / 2);
    painter.drawRoundedRect(QRectF(middle.x() - 2, middle.y() - notchHeight / 2, 4, notchHeight), 2, 2);
    const qreal from = qMin(middle.x(), handle.center().x());
    const qreal to = qMax(middle.x(), handle.center().x());
    painter.setBrush(isEnabled() ? colours::sky : colours::line);
    painter.drawRect(QRectF(from, middle.y() - barHeight / 2, to - from, barHeight));
    style()->drawComplexControl(QStyle::CC_Slider, &option, &painter, this);
}

void AdjustSlider::mouseDoubleClickEvent(QMouseEvent *) {
    setValue(0);
}

} // namespace lumora
