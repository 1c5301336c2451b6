// The stickers: one row each. Their drawings are ":/stickers/NAME.svg", on a grid of 64 pixels.
#pragma once

#include <QString>
#include <span>

namespace lumora {

enum class StickerGroup { Faces, DressUp, Animals, Outdoors, Party, Comic };

struct StickerRow {
    const char *name; ///< of its drawing
    const char *text; ///< identifier of what it is called
    StickerGroup group;
};

/// Those of a group are next to one another.
std::span<const StickerRow> stickers();

/// The resource of its drawing.
QString stickerDrawing(const StickerRow &row);

} // namespace lumora
