#include "widgets/ThemeStyle.h"

#include "widgets/FittedText.h"
#include "widgets/KeyboardFocus.h"
#include "widgets/Theme.h"

#include <QPainter>
#include <QPainterPath>
#include <QStyleOption>

namespace lumora {

namespace {

constexpr int indicatorSize = 26; // pixels
constexpr int grooveHeight = 8;   // pixels
constexpr int handleSize = 26;    // pixels
constexpr int handleEdge = 3;     // pixels
constexpr int widestTick = 560;   // pixels: the text of a wider check box or radio button wraps

QColor edgeColour(const QStyleOption &option) {
    if (!option.state.testFlag(QStyle::State_Enabled)) {
        return colours::line;
    }
    const bool lit = option.state & (QStyle::State_On | QStyle::State_NoChange);
    return lit ? colours::sky : colours::faintInk;
}

QColor fillColour(const QStyleOption &option) {
    if (!option.state.testFlag(QStyle::State_Enabled)) {
        return colours::parchment;
    }
    return option.state.testFlag(QStyle::State_MouseOver) ? colours::hover : colours::paper;
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

/// The groove, filled from the smallest value to the handle.
void drawGroove(const QStyleOptionSlider &option, const QRectF &groove, const QRectF &handle, QPainter &painter) {
    const bool enabled = option.state.testFlag(QStyle::State_Enabled);
    QRectF filled = groove;
    if (option.upsideDown) {
        filled.setLeft(handle.center().x());
    } else {
        filled.setRight(handle.center().x());
    }
    painter.setPen(Qt::NoPen);
    painter.setBrush(colours::line);
    painter.drawRoundedRect(groove, grooveHeight / 2.0, grooveHeight / 2.0);
    painter.setBrush(enabled ? colours::sky : colours::line);
    painter.drawRoundedRect(filled, grooveHeight / 2.0, grooveHeight / 2.0);
}

void drawHandle(const QStyleOptionSlider &option, const QRectF &handle, QPainter &painter) {
    const bool enabled = option.state.testFlag(QStyle::State_Enabled);
    const bool touched = option.activeSubControls & QStyle::SC_SliderHandle;
    const bool held = touched && (option.state & QStyle::State_Sunken);
    const bool lit = touched && (option.state & QStyle::State_MouseOver);
    painter.setPen(QPen(enabled ? colours::sky : colours::line, handleEdge));
    painter.setBrush(!enabled ? colours::parchment : held ? colours::sun : lit ? colours::hover : colours::paper);
    const qreal inset = handleEdge / 2.0;
    painter.drawEllipse(handle.adjusted(inset, inset, -inset, -inset));
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
    case PE_FrameFocusRect: // KeyboardFocus has a ring for all controls
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

void ThemeStyle::drawItemText(QPainter *painter, const QRect &place, int flags, const QPalette &palette, bool enabled,
                              const QString &text, QPalette::ColorRole role) const {
    const FittedText fitted = fitText(text, painter->font(), place.size(), flags);
    const QFont before = painter->font();
    painter->setFont(fitted.font);
    QProxyStyle::drawItemText(painter, place, fitted.flags, palette, enabled, fitted.text, role);
    painter->setFont(before);
}

QSize ThemeStyle::sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &contents,
                                   const QWidget *widget) const {
    QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
    if ((type == CT_CheckBox || type == CT_RadioButton) && size.width() > widestTick) {
        size = {widestTick, qMax(size.height(), 2 * option->fontMetrics.height() + 4)};
    }
    return size;
}

void ThemeStyle::polish(QWidget *widget) {
    QProxyStyle::polish(widget);
    letCaptionShrink(*widget);
}

void ThemeStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
                                    const QWidget *widget) const {
    const auto *slider = qstyleoption_cast<const QStyleOptionSlider *>(option);
    if (control != CC_Slider || slider == nullptr || slider->orientation != Qt::Horizontal) {
        QProxyStyle::drawComplexControl(control, option, painter, widget);
        return;
    }
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    const QRectF handle = subControlRect(CC_Slider, option, SC_SliderHandle, widget);
    if (option->subControls & SC_SliderGroove) {
        drawGroove(*slider, subControlRect(CC_Slider, option, SC_SliderGroove, widget), handle, *painter);
    }
    if (option->subControls & SC_SliderHandle) {
        drawHandle(*slider, handle, *painter);
    }
    painter->restore();
}

void ThemeStyle::drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                             const QWidget *widget) const {
    if (element != CE_FocusFrame) {
        QProxyStyle::drawControl(element, option, painter, widget);
        return;
    }
    QRect place = option->rect;
    if (widget != nullptr && widget->parentWidget() != nullptr) {
        // A control at the window's edge has its ring inside.
        place &= widget->parentWidget()->rect().translated(-widget->pos());
    }
    KeyboardFocus::paintRing(*painter, place,
                             qMin<qreal>(buttonCorner + KeyboardFocus::ringWidth, place.height() / 2.0));
}

QRect ThemeStyle::subControlRect(ComplexControl control, const QStyleOptionComplex *option, SubControl part,
                                 const QWidget *widget) const {
    const auto *slider = qstyleoption_cast<const QStyleOptionSlider *>(option);
    const bool ours = control == CC_Slider && slider != nullptr && slider->orientation == Qt::Horizontal;
    if (!ours || (part != SC_SliderHandle && part != SC_SliderGroove)) {
        return QProxyStyle::subControlRect(control, option, part, widget);
    }
    const QRect &all = slider->rect;
    QRect place = all;
    if (part == SC_SliderGroove) {
        place.setHeight(grooveHeight);
    } else {
        const int left = sliderPositionFromValue(slider->minimum, slider->maximum, slider->sliderPosition,
                                                 all.width() - handleSize, slider->upsideDown);
        place = QRect(all.left() + left, 0, handleSize, handleSize);
    }
    place.moveTop(all.top() + (all.height() - place.height()) / 2);
    return place;
}

int ThemeStyle::pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const {
    switch (metric) {
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
        return indicatorSize;
    case PM_SliderLength:
    case PM_SliderThickness:
    case PM_SliderControlThickness:
        return handleSize;
    case PM_FocusFrameHMargin:
    case PM_FocusFrameVMargin:
        return KeyboardFocus::ringWidth;
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
        return messageSign(colours::isHighContrast() ? colours::sun : colours::sky.lighter(140), "i");
    case SP_MessageBoxQuestion:
        return messageSign(colours::isHighContrast() ? colours::sun : colours::leaf.lighter(130), "?");
    default:
        return QProxyStyle::standardIcon(which, option, widget);
    }
}

int ThemeStyle::styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                          QStyleHintReturn *returnData) const {
    switch (hint) {
    case SH_DialogButtonBox_ButtonsHaveIcons:
    case SH_UnderlineShortcut:
    case SH_FocusFrame_Mask:
    case SH_ItemView_ActivateItemOnSingleClick: // one click chooses, two open
        return 0;
    case SH_FocusFrame_AboveWidget:
        return 1;
    case SH_Slider_AbsoluteSetButtons:
        return Qt::LeftButton; // a child presses where it wants the slider to be
    case SH_Widget_Animation_Duration:
        return motionWanted() ? QProxyStyle::styleHint(hint, option, widget, returnData) : 0;
    default:
        return QProxyStyle::styleHint(hint, option, widget, returnData);
    }
}

} // namespace lumora
