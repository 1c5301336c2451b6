// The memory game: twelve cards with six details of the photo.
#include "output/print/crafts/CraftPages.h"

#include <algorithm>

namespace lumora {

namespace {

constexpr QSize cardGrids[] = {{3, 4}, {4, 3}};
constexpr double cardEdge = 0.04; // of a card's side: white round its picture

/// Which detail is on each card, row by row: the same never beside or below the same, in both grids.
constexpr int cardDetails[] = {0, 1, 2, 3, 4, 5, 1, 0, 3, 2, 5, 4};

struct CardGrid {
    LyingSheet sheet;
    QSize cards;
    double side = 0; ///< of a card
};

CardGrid largestCards(const PrinterPaper &paper, QSize photo) {
    CardGrid best;
    for (const LyingSheet &sheet : waysToLie(paper, photo)) {
        for (const QSize grid : cardGrids) {
            const double side = std::min(sheet.inside.width() / grid.width(), sheet.inside.height() / grid.height());
            if (side > best.side * 1.000001) {
                best = {sheet, grid, side};
            }
        }
    }
    return best;
}

} // namespace

PrintPages layOutMemory(const PrinterPaper &paper, QSize photo, const CraftContent &content) {
    const auto [sheet, cards, side] = largestCards(paper, photo);
    PrintPage page{.size = sheet.size};
    QRectF table(0, 0, side * cards.width(), side * cards.height());
    table.moveCenter(sheet.inside.center());
    for (int column = 0; column <= cards.width(); ++column) {
        const double x = table.left() + column * side;
        addLine(page.cuts, {x, table.top()}, {x, table.bottom()});
    }
    for (int row = 0; row <= cards.height(); ++row) {
        const double y = table.top() + row * side;
        addLine(page.cuts, {table.left(), y}, {table.right(), y});
    }
    const double edge = side * cardEdge;
    for (int i = 0; i < cards.width() * cards.height(); ++i) {
        const int column = i % cards.width();
        const int row = i / cards.width();
        const QPointF corner = table.topLeft() + QPointF(column * side, row * side);
        page.pieces << PrintPiece{QRectF(corner, QSizeF(side, side)).adjusted(edge, edge, -edge, -edge),
                                  content.details.value(cardDetails[i], {0, 0, 1, 1})};
    }
    return {{page}};
}

} // namespace lumora
