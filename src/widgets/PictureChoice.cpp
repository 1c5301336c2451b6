#include "widgets/PictureChoice.h"

#include "widgets/Theme.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOptionButton>

namespace lumora {

namespace {

constexpr int choicePadding = 14; // pixels
constexpr int choiceGap = 10;     // pixels between picture and caption, and between dot and caption

} // namespace

PictureChoice::PictureChoice(const QString &icon, int pictureSize, QWidget *parent)
    : QRadioButton(parent), m_icon(icon), m_pictureSize(pictureSize) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setAttribute(Qt::WA_Hover);
}

QSize PictureChoice::sizeHint() const {
    const int dot = style()->pixelMetric(QStyle::PM_ExclusiveIndicatorWidth);
    const int line = dot + choiceGap + fontMetrics().horizontalAdvance(plainCaption(text())) + 2;
    return {qMax(m_pictureSize, line) + 2 * choicePadding,
            choicePadding + m_pictureSize + choiceGap + qMax(dot, fontMetrics().height()) + choicePadding};
}

void PictureChoice::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const bool lit = isEnabled() && underMouse();
    const bool chosen = isEnabled() && isChecked();
    const QColor surface = chosen ? colours::checked : lit ? colours::hover : colours::paper;
    constexpr qreal edge = 2;
    painter.setPen(QPen(chosen ? colours::checked : lit ? colours::sun : colours::line, edge));
    painter.setBrush(surface);
    painter.drawRoundedRect(QRectF(rect()).adjusted(edge / 2, edge / 2, -edge / 2, -edge / 2), panelCorner,
                            panelCorner);
    QPixmap picture = iconPixmap(m_icon, m_pictureSize, devicePixelRatioF());
    if (!isEnabled()) {
        picture = disabledPixmap(picture);
    }
    const int top = (height() - sizeHint().height()) / 2 + choicePadding;
    painter.drawPixmap((width() - m_pictureSize) / 2, top, picture);

    // Dot and caption are together in the middle.
    const QString caption = plainCaption(text());
    const int dot = style()->pixelMetric(QStyle::PM_ExclusiveIndicatorWidth);
    const int room = width() - 2 * choicePadding - dot - choiceGap;
    const int wide = qMin(fontMetrics().horizontalAdvance(caption) + 2, room);
    const int lineHeight = qMax(dot, fontMetrics().height());
    const QRect line((width() - dot - choiceGap - wide) / 2, top + m_pictureSize + choiceGap, dot + choiceGap + wide,
                     lineHeight);
    QStyleOptionButton option;
    initStyleOption(&option);
    option.rect =
        QStyle::visualRect(layoutDirection(), line, QRect(line.left(), line.top() + (lineHeight - dot) / 2, dot, dot));
    style()->drawPrimitive(QStyle::PE_IndicatorRadioButton, &option, &painter, this);
    painter.setPen(palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::WindowText));
    painter.drawText(QStyle::visualRect(layoutDirection(), line, line.adjusted(dot + choiceGap, 0, 0, 0)),
                     static_cast<int>(QStyle::visualAlignment(layoutDirection(), Qt::AlignLeft)) | Qt::AlignVCenter,
                     fontMetrics().elidedText(caption, Qt::ElideRight, wide));
}

} // namespace lumora
