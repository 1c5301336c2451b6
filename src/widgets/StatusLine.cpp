#include "widgets/StatusLine.h"

#include "widgets/Theme.h"

#include <QAccessible>
#include <QPainter>
#include <QStyle>

namespace lumora {

namespace {

constexpr int sideMargin = 14; // pixels
constexpr int signSize = 20;   // pixels

void paintSign(QPainter &painter, const QRectF &place) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colours::ink, 1.5));
    painter.setBrush(colours::sun);
    painter.drawEllipse(place);
    const QPointF centre = place.center();
    painter.setPen(QPen(colours::ink, 2.4, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(centre + QPointF(0, -4.5), centre + QPointF(0, 1));
    painter.drawPoint(centre + QPointF(0, 5));
}

} // namespace

StatusLine::StatusLine(const QString &name, QWidget *parent) : ElidedLabel(Qt::ElideMiddle, parent) {
    setObjectName(name);
    setContentsMargins(sideMargin, 4, sideMargin, 4);
    setMinimumHeight(34);
}

void StatusLine::setBaseText(const QString &text) {
    m_base = text;
    refresh();
}

void StatusLine::showMessage(const QString &message) {
    m_message = message;
    refresh();
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

void StatusLine::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.fillRect(rect(), m_message.isEmpty() ? colours::parchment : colours::hover);
    painter.fillRect(QRect(0, 0, width(), 1), colours::line);
    QRect place = contentsRect();
    if (!m_message.isEmpty()) {
        QRect sign(place.left(), 0, signSize, signSize);
        sign.moveCenter({sign.center().x(), place.center().y()});
        paintSign(painter, QStyle::visualRect(layoutDirection(), rect(), sign));
        place = QStyle::visualRect(layoutDirection(), rect(), place.adjusted(signSize + 8, 0, 0, 0));
    }
    paintText(painter, place, text());
}

} // namespace lumora
