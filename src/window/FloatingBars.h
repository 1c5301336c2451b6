// The floating tool bars beside the tool column: the bars, and one row per item. Those of the
// effects are in the effects' table.
#pragma once

#include "effects/EffectTable.h"

#include <QString>
#include <optional>
#include <span>

namespace lumora {

/// One floating tool bar.
struct FloatingBarRow {
    const char *bar;                         ///< object name, FT1 to FT6
    const char *tool;                        ///< the tool button beside which it opens
    int pictureSize;                         ///< pixels
    int simpleWidth;                         ///< width in twips in Simple mode; 0: as wide as its items
    bool fromLauncherOnly;                   ///< the width holds only when Simple mode was chosen in the launcher
    std::optional<EffectGroup> effects = {}; ///< whose items it has
};

/// One item of a floating tool bar.
struct FloatingItemRow {
    const char *bar;
    QString key;
    const char *iconName; ///< shown until there is a preview
};

std::span<const FloatingBarRow> floatingBars();
std::span<const FloatingItemRow> floatingItems();

} // namespace lumora
