#include "widgets/PictureChoice.h"

#include "widgets/FittedText.h"
#include "widgets/Theme.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOptionButton>

namespace lumora {

namespace {

constexpr int choicePadding = 14;      // pixels
constexpr int choiceGap = 10;          // pixels between picture and caption, and between dot and caption
constexpr int widestTickCaption = 128; // pixels: a longer caption wraps
constexpr int smallestTickCaption = 96;

int dotSize(const QAbstractButton &button) {
    return button.style()->pixelMetric(QStyle::PM_ExclusiveIndicatorWidth);
}

int captionHeight(const QAbstractButton &button, int lines) {
    return qMax(dotSize(button), lines * button.fontMetrics().lineSpacing());
}

int captionRoom(const QAbstractButton &button) {
    return button.width() - 2 * choicePadding - dotSize(button) - choiceGap;
}

FittedText fittedCaption(const PictureCard &card, const QAbstractButton &button) {
    const QSize room(captionRoom(button), captionHeight(button, card.mostLines));
    const int flags = static_cast<int>(QStyle::visualAlignment(button.layoutDirection(), Qt::AlignLeft)) |
                      Qt::AlignVCenter | (card.mostLines > 1 ? Qt::TextWordWrap : Qt::TextSingleLine);
    return fitText(plainCaption(button.text()), button.font(), room, flags);
}

} // namespace

QSize PictureCard::sizeHint(const QAbstractButton &button) const {
    const int caption = button.fontMetrics().horizontalAdvance(plainCaption(button.text())) + 2;
    const int line = dotSize(button) + choiceGap + (mostLines > 1 ? qMin(caption, widestTickCaption) : caption);
    return {qMax(pictureSize, line) + 2 * choicePadding,
            choicePadding + pictureSize + choiceGap + captionHeight(button, mostLines) + choicePadding};
}

bool PictureCard::isWhole(const QAbstractButton &button) const {
    return fittedCaption(*this, button).whole;
}

void PictureCard::paint(const QAbstractButton &button, const QStyleOption &state) const {
    QPainter painter(const_cast<QAbstractButton *>(&button));
    painter.setRenderHint(QPainter::Antialiasing);
    const bool lit = button.isEnabled() && button.underMouse();
    const bool chosen = button.isEnabled() && button.isChecked();
    constexpr qreal edge = 2;
    painter.setPen(QPen(chosen ? colours::checkedEdge : lit ? colours::litEdge : colours::line, edge));
    painter.setBrush(chosen ? colours::checked : lit ? colours::hover : colours::paper);
    painter.drawRoundedRect(QRectF(button.rect()).adjusted(edge / 2, edge / 2, -edge / 2, -edge / 2), panelCorner,
                            panelCorner);
    QPixmap picture = iconPixmap(icon, pictureSize, button.devicePixelRatioF());
    if (!button.isEnabled()) {
        picture = disabledPixmap(picture);
    }
    const int top = (button.height() - sizeHint(button).height()) / 2 + choicePadding;
    painter.drawPixmap((button.width() - pictureSize) / 2, top, picture);

    // Dot and caption are together in the middle.
    const FittedText caption = fittedCaption(*this, button);
    const int dot = dotSize(button);
    const int lineHeight = captionHeight(button, mostLines);
    const int needed = QFontMetrics(caption.font)
                           .boundingRect(QRect(0, 0, captionRoom(button), lineHeight), caption.flags, caption.text)
                           .width();
    const int wide = qMin(needed + 2, captionRoom(button));
    const QRect line((button.width() - dot - choiceGap - wide) / 2, top + pictureSize + choiceGap,
                     dot + choiceGap + wide, lineHeight);
    const Qt::LayoutDirection direction = button.layoutDirection();
    QStyleOptionButton option;
    static_cast<QStyleOption &>(option) = state;
    option.rect =
        QStyle::visualRect(direction, line, QRect(line.left(), line.top() + (lineHeight - dot) / 2, dot, dot));
    button.style()->drawPrimitive(isTick ? QStyle::PE_IndicatorCheckBox : QStyle::PE_IndicatorRadioButton, &option,
                                  &painter, &button);
    painter.setPen(
        button.palette().color(button.isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::WindowText));
    painter.setFont(caption.font);
    painter.drawText(QStyle::visualRect(direction, line, line.adjusted(dot + choiceGap, 0, 0, 0)), caption.flags,
                     caption.text);
}

PictureChoice::PictureChoice(const QString &icon, int pictureSize, QWidget *parent)
    : Choice(parent), m_card{icon, pictureSize, 1, false} {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setAttribute(Qt::WA_Hover);
}

void PictureChoice::paintEvent(QPaintEvent *) {
    QStyleOptionButton option;
    initStyleOption(&option);
    m_card.paint(*this, option);
}

PictureTick::PictureTick(const QString &icon, int pictureSize, QWidget *parent)
    : Tick(parent), m_card{icon, pictureSize, 2, true} {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    setAttribute(Qt::WA_Hover);
}

QSize PictureTick::minimumSizeHint() const {
    return {m_card.pictureSize + smallestTickCaption, sizeHint().height()};
}

void PictureTick::paintEvent(QPaintEvent *) {
    QStyleOptionButton option;
    initStyleOption(&option);
    m_card.paint(*this, option);
}

} // namespace lumora
