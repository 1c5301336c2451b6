#include "widgets/ElidedLabel.h"

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

namespace lumora {

ElidedLabel::ElidedLabel(Qt::TextElideMode mode, QWidget *parent) : QLabel(parent), m_mode(mode) {
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QSize ElidedLabel::minimumSizeHint() const {
    return {fontMetrics().averageCharWidth() * 6, fontMetrics().height() + 4};
}

bool ElidedLabel::event(QEvent *event) {
    if (event->type() == QEvent::ToolTip && toolTip().isEmpty()) {
        const bool shortened = fontMetrics().horizontalAdvance(text()) > contentsRect().width();
        QToolTip::showText(static_cast<QHelpEvent *>(event)->globalPos(), shortened ? text() : QString(), this);
        return true;
    }
    return QLabel::event(event);
}

void ElidedLabel::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    paintText(painter, contentsRect(), text());
}

void ElidedLabel::paintText(QPainter &painter, const QRect &place, const QString &text) const {
    painter.setPen(palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, foregroundRole()));
    const auto where = QStyle::visualAlignment(layoutDirection(), alignment());
    painter.drawText(place, static_cast<int>(where) | Qt::TextSingleLine,
                     painter.fontMetrics().elidedText(text, m_mode, place.width()));
}

} // namespace lumora
