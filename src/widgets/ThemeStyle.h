// The few parts that a style sheet cannot draw without picture files: ticks, dots, arrows and the signs of messages, in
// Lumora's colours and large enough for small hands. Used by applyTheme.
#pragma once

#include <QProxyStyle>

namespace lumora {

class ThemeStyle : public QProxyStyle {
    Q_OBJECT

  public:
    ThemeStyle();

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const override;
    QIcon standardIcon(StandardPixmap which, const QStyleOption *option, const QWidget *widget) const override;
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *returnData) const override;
};

} // namespace lumora
