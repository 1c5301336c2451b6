// What can be made of a photo and paper: a card to fold, a poster of four sheets, a memory game, a puzzle. One row
// each; Simple mode's print window offers them below its layouts.
#pragma once

#include "output/print/PageLayout.h"

#include <array>
#include <span>

namespace lumora {

class Texts;

struct PaperCraft {
    const char *button;                ///< object name of its button
    const char *how;                   ///< identifier of the text that says what to do with the paper
    std::array<const char *, 2> words; ///< identifiers of the texts that are printed; null for none
    /// Lays out the photo (its size in pixels, not empty) on sheets of that paper.
    PrintPages (*layOut)(const PrinterPaper &paper, QSize photo, const CraftContent &content);
};

std::span<const PaperCraft> paperCrafts();

/// What goes with the photo on the paper. `picture` is the photo at a size that is enough for a preview.
CraftContent contentFor(const PaperCraft &craft, const Texts &texts, const QImage &picture);

} // namespace lumora
