#include "widgets/ThemeStyle.h"

#include "widgets/Theme.h"

#include <QPainter>
#include <QPainterPath>
#include <QStyleOption>

namespace lumora {

namespace {

constexpr int indicatorSize = 26; // pixels

QColor edgeColour(const QStyleOption &option) {
    if (!option.state.testFlag(QStyle::State_Enabled)) {
        return colours::line;
    }
    const bool lit = option.state & (QStyle::State_On | QStyle::State_NoChange | QStyle::State_HasFocus);
    return lit ? colours::sky : colours::faintInk;
}

QColor fillColour(const QStyleOption &option) {
    if (!option.state.testFlag(QStyle::State_Enabled)) {
        return colours::parchment;
    }
    return option.state.testFlag(QStyle::State_MouseOver) ? colours::hover : QColor(Qt::white);
}

void drawTickBox(const QStyleOption &option, QPainter &painter) {
    const QRectF box = QRectF(option.rect).adjusted(2, 2, -2, -2);
    painter.setPen(QPen(edgeColour(option), 2.5));
    painter.setBrush(fillColour(option));
    painter.drawRoundedRect(box, 6, 6);
    if (!option.state.testFlag(QStyle::State_On)) {
        return;
    }
    const QPointF centre = box.center();
    const qreal unit = box.width() / 22;
    painter.setPen(QPen(edgeColour(option), 4 * unit, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(
        QPolygonF({centre + QPointF(-6, 0) * unit, centre + QPointF(-2, 5) * unit, centre + QPointF(7, -6) * unit}));
}

void drawRadioDot(const QStyleOption &option, QPainter &painter) {
    const QRectF ring = QRectF(option.rect).adjusted(2, 2, -2, -2);
    painter.setPen(QPen(edgeColour(option), 2.5));
    painter.setBrush(fillColour(option));
    painter.drawEllipse(ring);
    if (option.state.testFlag(QStyle::State_On)) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(edgeColour(option));
        painter.drawEllipse(ring.adjusted(6, 6, -6, -6));
    }
}

void drawArrow(const QStyleOption &option, QPainter &painter, qreal degrees) {
    const qreal unit = qMin(qMin(option.rect.width(), option.rect.height()) / 10.0, 1.4);
    painter.translate(QRectF(option.rect).center());
    painter.rotate(degrees);
    const bool enabled = option.state.testFlag(QStyle::State_Enabled);
    painter.setPen(QPen(enabled ? colours::ink : colours::line, 2 * unit, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPolyline(QPolygonF({QPointF(-4, -2) * unit, QPointF(0, 2) * unit, QPointF(4, -2) * unit}));
}

/// A round sign with one character: what kind of message this is.
QIcon messageSign(const QColor &colour, const QString &character) {
    constexpr int size = 112; // pixels: twice the size of a message box's sign, for screens of double density
    QPixmap pixmap(size, size);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colours::ink, 7));
    painter.setBrush(colour);
    painter.drawEllipse(QRectF(6, 6, size - 12, size - 12));
    QFont font("Andika");
    font.setPixelSize(76);
    font.setBold(true);
    painter.setFont(font);
    painter.setPen(colours::ink);
    painter.drawText(QRect(0, 0, size, size), Qt::AlignCenter, character);
    return QIcon(pixmap);
}

} // namespace

ThemeStyle::ThemeStyle() : QProxyStyle("Fusion") {}

void ThemeStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                               const QWidget *widget) const {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    switch (element) {
    case PE_IndicatorCheckBox:
        drawTickBox(*option, *painter);
        break;
    case PE_IndicatorRadioButton:
        drawRadioDot(*option, *painter);
        break;
    case PE_IndicatorArrowDown:
    case PE_IndicatorSpinDown:
        drawArrow(*option, *painter, 0);
        break;
    case PE_IndicatorArrowUp:
    case PE_IndicatorSpinUp:
        drawArrow(*option, *painter, 180);
        break;
    default:
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
    painter->restore();
}

int ThemeStyle::pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const {
    switch (metric) {
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
        return indicatorSize;
    case PM_SmallIconSize:
    case PM_ListViewIconSize:
        return 22;
    case PM_MessageBoxIconSize:
        return 56;
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

QIcon ThemeStyle::standardIcon(StandardPixmap which, const QStyleOption *option, const QWidget *widget) const {
    switch (which) {
    case SP_MessageBoxCritical:
        return messageSign(colours::coral, "!");
    case SP_MessageBoxWarning:
        return messageSign(colours::sun, "!");
    case SP_MessageBoxInformation:
        return messageSign(colours::sky.lighter(140), "i");
    case SP_MessageBoxQuestion:
        return messageSign(colours::leaf.lighter(130), "?");
    default:
        return QProxyStyle::standardIcon(which, option, widget);
    }
}

int ThemeStyle::styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                          QStyleHintReturn *returnData) const {
    switch (hint) {
    case SH_DialogButtonBox_ButtonsHaveIcons:
    case SH_UnderlineShortcut:
    case SH_ItemView_ActivateItemOnSingleClick: // one click chooses, two open
        return 0;
    case SH_Slider_AbsoluteSetButtons:
        return Qt::LeftButton; // a child presses where it wants the slider to be
    case SH_Widget_Animation_Duration:
        return motionWanted() ? QProxyStyle::styleHint(hint, option, widget, returnData) : 0;
    default:
        return QProxyStyle::styleHint(hint, option, widget, returnData);
    }
}

} // namespace lumora
