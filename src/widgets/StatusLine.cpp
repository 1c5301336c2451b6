#include "widgets/StatusLine.h"

#include "widgets/Accessibility.h"
#include "widgets/FittedText.h"
#include "widgets/ReadAloud.h"
#include "widgets/Theme.h"

#include <QAccessible>
#include <QPainter>
#include <QStyle>
#include <algorithm>

namespace lumora {

namespace {

constexpr int sideMargin = 14; // pixels
constexpr int signSize = 20;   // pixels

void paintSign(QPainter &painter, const QRectF &place, bool good) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colours::ink, 1.5));
    painter.setBrush(good ? colours::leaf : colours::sun);
    painter.drawEllipse(place);
    const QPointF centre = place.center();
    painter.setPen(QPen(good ? Qt::white : colours::ink, 2.4, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    if (good) {
        painter.drawPolyline(
            QPolygonF({centre + QPointF(-4, 0), centre + QPointF(-1, 3.5), centre + QPointF(4.5, -3.5)}));
        return;
    }
    painter.drawLine(centre + QPointF(0, -4.5), centre + QPointF(0, 1));
    painter.drawPoint(centre + QPointF(0, 5));
}

} // namespace

StatusLine::StatusLine(const QString &name, QWidget *parent) : ElidedLabel(Qt::ElideMiddle, parent) {
    setObjectName(name);
    setAccessibleRole(*this, QAccessible::StatusBar);
    setContentsMargins(sideMargin, 4, sideMargin, 4);
    setMinimumHeight(28);
}

void StatusLine::setBaseText(const QString &text) {
    m_base = text;
    refresh();
}

void StatusLine::showMessage(const QString &message, Tone tone) {
    m_message = message;
    m_tone = tone;
    refresh();
    ReadAloud::announce(message);
}

void StatusLine::clearMessage() {
    showMessage({});
}

void StatusLine::refresh() {
    setText(m_message.isEmpty() ? m_base : m_message);
    setAccessibleName(text());
    if (!m_message.isEmpty()) {
        QAccessibleEvent said(this, QAccessible::Alert); // so that it is also read aloud
        QAccessible::updateAccessibility(&said);
    }
}

QRect StatusLine::textPlace() const {
    const int sign = m_message.isEmpty() ? 0 : signSize + 8;
    return QStyle::visualRect(layoutDirection(), rect(), contentsRect().adjusted(sign, 0, 0, 0));
}

/// The usual ones, or smaller ones for a text that is wider than its place.
QFont StatusLine::letters() const {
    QFont letters = font();
    const double room = textPlace().width();
    const double part = room / std::max(1, fontMetrics().horizontalAdvance(text()) + 1);
    letters.setPointSizeF(font().pointSizeF() * std::clamp(part, smallestLetters, 1.0));
    return letters;
}

bool StatusLine::isTextWhole() const {
    return QFontMetrics(letters()).horizontalAdvance(text()) <= textPlace().width();
}

void StatusLine::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.fillRect(rect(), m_message.isEmpty() ? colours::parchment : colours::hover);
    painter.fillRect(QRect(0, 0, width(), 1), colours::line);
    if (!m_message.isEmpty()) {
        QRect sign(contentsRect().left(), 0, signSize, signSize);
        sign.moveCenter({sign.center().x(), contentsRect().center().y()});
        paintSign(painter, QStyle::visualRect(layoutDirection(), rect(), sign), m_tone == Tone::Good);
    }
    painter.setFont(letters());
    paintText(painter, textPlace(), text());
}

} // namespace lumora
