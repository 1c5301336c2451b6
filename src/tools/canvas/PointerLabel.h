// A short label beside the pointer: distance or size. Tools draw it over the photo while something is dragged.
#pragma once

#include <QPointF>
#include <QRect>
#include <QString>

class QPainter;

namespace lumora {

/// Paints the words on a small dark label beside the pointer, completely inside `view`.
void paintPointerLabel(QPainter &painter, const QRect &view, QPointF pointer, const QString &words);

} // namespace lumora
