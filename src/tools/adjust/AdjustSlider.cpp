#include "tools/adjust/AdjustSlider.h"

#include "widgets/Theme.h"

#include <QPainter>
#include <QStyleOptionSlider>

namespace lumora {

namespace {

constexpr qreal barHeight = 8; // pixels, as the style's own
constexpr qreal notchHeight = 18;

} // namespace

AdjustSlider::AdjustSlider(const QString &name, int least, int most, int usual, QWidget *parent)
    : QSlider(Qt::Horizontal, parent), m_usual(usual) {
    setObjectName(name);
    setRange(least, most);
    setPageStep(most / 10);
}

/// Of the handle at that value.
qreal AdjustSlider::centreAt(int value) const {
    QStyleOptionSlider option;
    initStyleOption(&option);
    option.sliderPosition = value;
    return QRectF(style()->subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, this)).center().x();
}

void AdjustSlider::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    QStyleOptionSlider option;
    initStyleOption(&option);
    option.subControls = QStyle::SC_SliderHandle;
    const qreal middle = QRectF(rect()).center().y();
    const qreal zero = centreAt(0);
    const qreal usual = centreAt(m_usual);
    const qreal now = centreAt(sliderPosition());
    painter.setBrush(colours::line);
    painter.drawRoundedRect(QRectF(0, middle - barHeight / 2, width(), barHeight), barHeight / 2, barHeight / 2);
    painter.drawRoundedRect(QRectF(usual - 2, middle - notchHeight / 2, 4, notchHeight), 2, 2);
    painter.setBrush(isEnabled() ? colours::sky : colours::line);
    painter.drawRect(QRectF(qMin(zero, now), middle - barHeight / 2, qAbs(now - zero), barHeight));
    style()->drawComplexControl(QStyle::CC_Slider, &option, &painter, this);
}

void AdjustSlider::mouseDoubleClickEvent(QMouseEvent *) {
    setValue(m_usual);
}

} // namespace lumora
