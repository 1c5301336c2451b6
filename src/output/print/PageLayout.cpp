#include "output/print/PageLayout.h"

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

/// A sheet that lies in one of its two ways, divided.
struct Candidate {
    QSizeF sheet;
    QRectF inside; ///< the margins
    Grid grid;
    QSizeF photo;

    QSizeF part() const {
        return {(inside.width() - (grid.columns - 1) * gap) / grid.columns,
                (inside.height() - (grid.rows - 1) * gap) / grid.rows};
    }
};

Candidate candidate(const PrinterPaper &paper, bool turned, Grid grid, QSizeF photo, bool fit) {
    const double across = std::max(paper.margins.left(), paper.margins.right());
    const double down = std::max(paper.margins.top(), paper.margins.bottom());
    const QSizeF sheet = turned ? paper.size.transposed() : paper.size;
    const QSizeF margin = turned ? QSizeF(down, across) : QSizeF(across, down);
    Candidate one{sheet,
                  QRectF({}, sheet).adjusted(margin.width(), margin.height(), -margin.width(), -margin.height()),
                  grid,
                  {}};
    const QSizeF own = photo * (pointsPerInch / ownPixelsPerInch);
    const QSizeF room = one.part();
    const bool small = own.width() <= room.width() && own.height() <= room.height();
    one.photo = !fit && small ? own : photo.scaled(room, Qt::KeepAspectRatio);
    return one;
}

} // namespace

PrintPage layOutPage(const PrinterPaper &paper, QSize photo, const PrintLayout &layout) {
    const bool wide = photo.width() >= photo.height();
    const bool paperIsWide = paper.size.width() > paper.size.height();
    QList<Candidate> candidates; // first those whose sheet lies like the photo
    for (const bool turned : {wide != paperIsWide, wide == paperIsWide}) {
        for (const Grid grid : gridsOf(layout.photos)) {
            candidates << candidate(paper, turned, grid, photo, layout.fit);
        }
    }
    const auto smaller = [](const Candidate &a, const Candidate &b) {
        return a.photo.width() * 1.000001 < b.photo.width();
    };
    const Candidate &best = *std::max_element(candidates.begin(), candidates.end(), smaller);
    PrintPage page{best.sheet, {}};
    if (photo.isEmpty()) {
        return page;
    }
    const QSizeF part = best.part();
    const QSizeF spare = layout.centre ? (part - best.photo) / 2 : QSizeF(0, 0);
    for (int row = 0; row < best.grid.rows; ++row) {
        for (int column = 0; column < best.grid.columns; ++column) {
            const QPointF corner(best.inside.left() + column * (part.width() + gap) + spare.width(),
                                 best.inside.top() + row * (part.height() + gap) + spare.height());
            page.places << QRectF(corner, best.photo);
        }
    }
    return page;
}

QSize dotsOf(QSizeF points, double dotsPerInch) {
    const auto dots = [dotsPerInch](double length) {
        return std::max(1, static_cast<int>(std::lround(length / pointsPerInch * dotsPerInch)));
    };
    return {dots(points.width()), dots(points.height())};
}

} // namespace lumora
