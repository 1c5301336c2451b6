// The jigsaw puzzle.
#include "output/print/crafts/CraftPages.h"

#include <QTransform>
#include <algorithm>
#include <cmath>
#include <cstdint>

namespace lumora {

namespace {

constexpr QSize puzzleGrids[] = {{4, 3}, {3, 4}, {6, 2}, {2, 6}, {12, 1}, {1, 12}};

/// The grid whose pieces are nearest to squares.
QSize gridFor(QSizeF photo) {
    const auto longness = [photo](QSize grid) {
        return std::abs(std::log(photo.width() * grid.height() / (photo.height() * grid.width())));
    };
    return *std::ranges::min_element(puzzleGrids, {}, longness);
}

/// A number from -1 to 1, always the same for the same side of a piece.
double chance(int side, int what) {
    auto mixed = static_cast<std::uint32_t>(side * 31 + what * 7919 + 17);
    mixed = (mixed ^ (mixed >> 16U)) * 0x45d9f3bU;
    mixed = (mixed ^ (mixed >> 16U)) * 0x45d9f3bU;
    mixed ^= mixed >> 16U;
    return mixed % 2001 / 1000.0 - 1;
}

/// One side of a piece, from one corner to the next, with a knob at its left or its right; `unit` is the shorter side
/// of a piece. The knob is a third as wide as that and a quarter as high.
QPainterPath knobbedSide(QPointF from, QPointF to, double unit, int side) {
    const QLineF line(from, to);
    const double end = line.length() / unit / 2; // seen from the middle, in units
    const double knob = chance(side, 0) < 0 ? -1 : 1;
    const double shift = chance(side, 1) * 0.06;
    const double wave = chance(side, 2) * 0.05;
    const QTransform place =
        QTransform().translate(line.center().x(), line.center().y()).rotate(-line.angle()).scale(unit, unit * knob);
    const auto at = [&place](double x, double y) { return place.map(QPointF(x, y)); };
    QPainterPath path(from);
    path.cubicTo(at(-end * 0.6, wave), at(shift + 0.01, -0.13), at(shift - 0.10, 0.09));
    path.cubicTo(at(shift - 0.21, 0.31), at(shift + 0.21, 0.31), at(shift + 0.10, 0.09));
    path.cubicTo(at(shift - 0.01, -0.13), at(end * 0.6, -wave), to);
    return path;
}

} // namespace

QPainterPath jigsawLines(const QRectF &area, int columns, int rows) {
    const QSizeF piece(area.width() / columns, area.height() / rows);
    const double unit = std::min(piece.width(), piece.height());
    const auto corner = [&](int column, int row) {
        return QPointF(area.left() + column * piece.width(), area.top() + row * piece.height());
    };
    QPainterPath lines;
    int side = 0;
    for (int row = 0; row < rows; ++row) {
        for (int column = 0; column < columns; ++column) {
            if (column > 0) {
                lines.addPath(knobbedSide(corner(column, row), corner(column, row + 1), unit, ++side));
            }
            if (row > 0) {
                lines.addPath(knobbedSide(corner(column, row), corner(column + 1, row), unit, ++side));
            }
        }
    }
    return lines;
}

PrintPages layOutPuzzle(const PrinterPaper &paper, QSize photo, const CraftContent &) {
    const auto [sheet, size] = largestPhoto(paper, photo, [](const LyingSheet &way) { return way.inside.size(); });
    QRectF place({}, size);
    place.moveCenter(sheet.inside.center());
    const QSize grid = gridFor(size);
    PrintPage page{.size = sheet.size};
    page.pieces << PrintPiece{place};
    page.cuts = jigsawLines(place, grid.width(), grid.height());
    page.cuts.addRect(place);
    return {{page}};
}

} // namespace lumora
