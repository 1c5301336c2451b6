// The frame round the chosen decoration and its large handles: where they are, which one a finger meets, how they look.
// All in the view's pixels.
#pragma once

#include "imaging/decorations/Decoration.h"

#include <QPolygonF>
#include <optional>

class QPainter;

namespace lumora {

inline constexpr double handleSize = 44; ///< pixels across

enum class ItemHandle { None, Inside, Size, Turn, Tail };

struct ItemHandles {
    QPolygonF frame;             ///< four corners of the turned box, a little larger
    QPointF size;                ///< at the lower right corner
    QPointF turn;                ///< at the upper right corner
    std::optional<QPointF> tail; ///< at a bubble's tip

    /// Whether anything of the decoration is in that view.
    bool isIn(const QRectF &view) const { return frame.boundingRect().intersects(view); }
    /// What all of it covers.
    QRectF bounds() const;
};

/// `toView` leads from picture pixels to the view's. Handles stay in `view` as
/// long as anything of the decoration is in it.
ItemHandles handlesOf(const Decoration &item, const DecorationShape &shape, const QTransform &toView,
                      const QRectF &view);

/// The handle at that point; Inside within the frame.
ItemHandle handleAt(const ItemHandles &handles, QPointF point);

/// Whether a press at that point meets the decoration; a small one is met from a little farther.
bool meets(const Decoration &item, const DecorationShape &shape, const QTransform &toView, QPointF point);

void paintItemHandles(QPainter &painter, const ItemHandles &handles);

} // namespace lumora
