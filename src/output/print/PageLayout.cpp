#include "output/print/PageLayout.h"

#include "output/print/crafts/PaperCrafts.h"

#include <algorithm>
#include <cmath>

namespace lumora {

namespace {

constexpr double gap = 14; // points between two photos: room for scissors

struct Grid {
    int columns, rows;
};

/// The ways in which so many photos stand on a page.
QList<Grid> gridsOf(int photos) {
    switch (photos) {
    case 2:
        return {{1, 2}, {2, 1}};
    case 4:
        return {{2, 2}};
    case 9:
        return {{3, 3}};
    default:
        return {{1, 1}};
    }
}

/// A sheet that is divided.
struct Candidate {
    LyingSheet sheet;
    Grid grid;
    QSizeF photo;

    QSizeF part() const {
        return {(sheet.inside.width() - (grid.columns - 1) * gap) / grid.columns,
                (sheet.inside.height() - (grid.rows - 1) * gap) / grid.rows};
    }
};

Candidate candidate(const LyingSheet &sheet, Grid grid, QSizeF photo, bool fit) {
    Candidate one{sheet, grid, {}};
    const QSizeF own = photo * (pointsPerInch / ownPixelsPerInch);
    const QSizeF room = one.part();
    const bool small = own.width() <= room.width() && own.height() <= room.height();
    one.photo = !fit && small ? own : photo.scaled(room, Qt::KeepAspectRatio);
    return one;
}

} // namespace

QRectF PrintPiece::wholePlace() const {
    const QSizeF whole(place.width() / part.width(), place.height() / part.height());
    return {place.topLeft() - QPointF(part.x() * whole.width(), part.y() * whole.height()), whole};
}

QList<LyingSheet> waysToLie(const PrinterPaper &paper, QSize photo) {
    const double across = std::max(paper.margins.left(), paper.margins.right());
    const double down = std::max(paper.margins.top(), paper.margins.bottom());
    const QRectF sheet({}, paper.size);
    const QRectF inside = sheet.adjusted(across, down, -across, -down);
    const auto turned = [](const QRectF &place) {
        return QRectF(place.topLeft().transposed(), place.size().transposed());
    };
    QList<LyingSheet> ways{{sheet.size(), inside}, {turned(sheet).size(), turned(inside)}};
    const bool wide = photo.width() >= photo.height();
    if (wide != (paper.size.width() > paper.size.height())) {
        ways.swapItemsAt(0, 1);
    }
    return ways;
}

PrintPages layOutPages(const PrinterPaper &paper, QSize photo, const PrintLayout &layout) {
    if (layout.craft != nullptr && !photo.isEmpty()) {
        return layout.craft->layOut(paper, photo, layout.content);
    }
    QList<Candidate> candidates;
    for (const LyingSheet &sheet : waysToLie(paper, photo)) {
        for (const Grid grid : gridsOf(layout.photos)) {
            candidates << candidate(sheet, grid, photo, layout.fit);
        }
    }
    const auto smaller = [](const Candidate &a, const Candidate &b) {
        return a.photo.width() * 1.000001 < b.photo.width();
    };
    const Candidate &best = *std::max_element(candidates.begin(), candidates.end(), smaller);
    PrintPage page{best.sheet.size, {}};
    if (photo.isEmpty()) {
        return {{page}};
    }
    const QSizeF part = best.part();
    const QSizeF spare = layout.centre ? (part - best.photo) / 2 : QSizeF(0, 0);
    for (int row = 0; row < best.grid.rows; ++row) {
        for (int column = 0; column < best.grid.columns; ++column) {
            const QPointF corner(best.sheet.inside.left() + column * (part.width() + gap) + spare.width(),
                                 best.sheet.inside.top() + row * (part.height() + gap) + spare.height());
            page.pieces << PrintPiece{QRectF(corner, best.photo)};
        }
    }
    return {{page}};
}

QSize dotsOf(QSizeF points, double dotsPerInch) {
    const auto dots = [dotsPerInch](double length) {
        return std::max(1, static_cast<int>(std::lround(length / pointsPerInch * dotsPerInch)));
    };
    return {dots(points.width()), dots(points.height())};
}

} // namespace lumora
