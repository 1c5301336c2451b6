// The few parts that a style sheet cannot draw without picture files, or not mirrored: ticks, dots, arrows, sliders and
// the signs of messages, in Lumora's colours and large enough for small hands. Used by applyTheme.
#pragma once

#include <QProxyStyle>

namespace lumora {

class ThemeStyle : public QProxyStyle {
    Q_OBJECT

  public:
    ThemeStyle();

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
    /// A text that does not fit is fitted, see FittedText.h.
    void drawItemText(QPainter *painter, const QRect &place, int flags, const QPalette &palette, bool enabled,
                      const QString &text, QPalette::ColorRole role) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &contents,
                           const QWidget *widget) const override;
    using QProxyStyle::polish;
    void polish(QWidget *widget) override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
                            const QWidget *widget) const override;
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex *option, SubControl part,
                         const QWidget *widget) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const override;
    QIcon standardIcon(StandardPixmap which, const QStyleOption *option, const QWidget *widget) const override;
    int styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                  QStyleHintReturn *returnData) const override;
};

} // namespace lumora
