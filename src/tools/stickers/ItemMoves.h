// How a hand or a key moves, sizes and turns a decoration. Positions are picture pixels; the results can always be
// found again: the centre is on the photo, the size between 4 pixels and four times the photo's longer side.
#pragma once

#include "tools/stickers/ItemHandles.h"

#include <QSize>
#include <optional>

class QKeyEvent;

namespace lumora {

/// The item with the nearest centre on the photo and the nearest size that is allowed.
Decoration keptOnPhoto(Decoration item, QSize photo);

/// Words that are typed are wholly on the photo: smaller where they are too many, and away from its edges.
Decoration fittedOnPhoto(Decoration item, QSize photo);

/// The item when the handle that was pressed at `from` is at `to`. A turn ends upright when it is within four degrees
/// of a right angle.
Decoration draggedItem(Decoration item, ItemHandle handle, QPointF from, QPointF to, QSize photo);

/// The item as that key changes it: arrows (with Shift ten times as far), + and -, [ and ]; nothing for other keys.
/// `zoom` is in pixels of the view to one of the picture.
std::optional<Decoration> keyedItem(Decoration item, const QKeyEvent &key, double zoom, QSize photo);

} // namespace lumora
