#include "tools/canvas/PointerLabel.h"

#include "widgets/Theme.h"

#include <QFontMetricsF>
#include <QPainter>

namespace lumora {

namespace {

// pixels
constexpr qreal below = 26; // closer text would be covered by the pointer or a finger
constexpr qreal beside = 18;
constexpr qreal padding = 10;
constexpr qreal corner = 10;

} // namespace

void paintPointerLabel(QPainter &painter, const QRect &view, QPointF pointer, const QString &words) {
    painter.save();
    QFont font = painter.font();
    font.setBold(true);
    font.setPointSizeF(14);
    painter.setFont(font);
    const QFontMetricsF metrics(font);
    const QSizeF size(metrics.horizontalAdvance(words) + 2 * padding, metrics.height() + padding / 2);
    QPointF at = pointer + QPointF(beside, below);
    if (at.x() + size.width() > view.right()) {
        at.setX(pointer.x() - beside - size.width());
    }
    if (at.y() + size.height() > view.bottom()) {
        at.setY(pointer.y() - below - size.height());
    }
    at.setX(qBound<qreal>(view.left(), at.x(), qMax<qreal>(view.left(), view.right() - size.width())));
    at.setY(qBound<qreal>(view.top(), at.y(), qMax<qreal>(view.top(), view.bottom() - size.height())));
    const QRectF label(at, size);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Qt::white, 2));
    painter.setBrush(colours::ink);
    painter.drawRoundedRect(label, corner, corner);
    painter.setPen(Qt::white);
    painter.drawText(label, Qt::AlignCenter, words);
    painter.restore();
}

} // namespace lumora
