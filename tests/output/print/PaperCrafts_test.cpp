// Where everything lies on the sheets of the paper crafts: what is cut, folded and glued has to come out right.
#include "output/print/crafts/PaperCrafts.h"

#include "imaging/decorations/StickerTable.h"
#include "output/print/PageDrawing.h"
#include "output/print/crafts/CraftPages.h"
#include "output/print/crafts/PhotoDetails.h"

#include <QPainter>
#include <algorithm>
#include <gtest/gtest.h>

namespace lumora {
namespace {

constexpr double close = 0.01; // points
const PrinterPaper papers[] = {
    {{595, 842}, {18, 18, 18, 36}, 300}, // A4
    {{612, 792}, {0, 0, 0, 0}, 600},     // Letter
    {{432, 288}, {10, 10, 10, 10}, 300}, // a card that lies in the printer on its long side
    {{252, 102}, {4, 4, 4, 4}, 300},     // a label
};
const QSize photos[] = {{6000, 4000}, {3000, 4000}, {500, 500}, {8000, 400}, {1, 1}, {3, 900}};

QImage striped(QSize size) {
    QImage picture(size, QImage::Format_RGB32);
    for (int y = 0; y < size.height(); ++y) {
        for (int x = 0; x < size.width(); ++x) {
            picture.setPixel(x, y, qRgb(x * 255 / size.width(), y * 255 / size.height(), x / 40 % 2 * 200));
        }
    }
    return picture;
}

CraftContent contentOf(QSize photo) {
    return {{"%1 of %2, a greeting that is as long as any", "Made by"},
            differingDetails(striped(photo.scaled(300, 300, Qt::KeepAspectRatio).expandedTo({1, 1})))};
}

/// The narrowest side decides: a sheet may leave the printer either end first.
QRectF printable(const PrinterPaper &paper, const PrintPage &page) {
    const double across = std::max(paper.margins.left(), paper.margins.right());
    const double down = std::max(paper.margins.top(), paper.margins.bottom());
    const bool turned = page.size != paper.size;
    EXPECT_TRUE(!turned || page.size == paper.size.transposed());
    const QMarginsF margins = turned ? QMarginsF(down, across, down, across) : QMarginsF(across, down, across, down);
    return QRectF({}, page.size).marginsRemoved(margins).adjusted(-close, -close, close, close);
}

/// Also for a line, whose box is flat.
bool holds(const QRectF &room, const QRectF &box) {
    return room.left() <= box.left() && room.top() <= box.top() && room.right() >= box.right() &&
           room.bottom() >= box.bottom();
}

QRectF boundsOf(const Decoration &decoration) {
    const DecorationShape shape = shapeOf(decoration);
    QRectF bounds = shape.box;
    for (const DecorationLayer &layer : shape.layers) {
        bounds |= layer.path.boundingRect();
    }
    return placeOf(decoration).mapRect(bounds);
}

TEST(PaperCrafts, EverythingIsWhereThePrinterPrintsAndNothingIsStretched) {
    for (const PaperCraft &craft : paperCrafts()) {
        for (const PrinterPaper &paper : papers) {
            for (const QSize photo : photos) {
                SCOPED_TRACE(testing::Message() << craft.button << ' ' << paper.size.width() << " points wide, photo "
                                                << photo.width() << " x " << photo.height());
                const PrintPages pages = layOutPages(paper, photo, {.craft = &craft, .content = contentOf(photo)});
                ASSERT_EQ(pages.sheets.size(), craft.layOut == &layOutPoster ? 4 : 1);
                for (const PrintPage &page : pages.sheets) {
                    EXPECT_EQ(page.size, pages.sheets.first().size);
                    const QRectF room = printable(paper, page);
                    ASSERT_FALSE(page.pieces.isEmpty());
                    for (const PrintPiece &piece : page.pieces) {
                        EXPECT_TRUE(room.contains(piece.place));
                        EXPECT_TRUE(QRectF(-1e-9, -1e-9, 1 + 2e-9, 1 + 2e-9).contains(piece.part));
                        const QSizeF whole = piece.wholePlace().size();
                        EXPECT_NEAR(whole.width() * photo.height() / (whole.height() * photo.width()), 1, 1e-6);
                    }
                    for (const QPainterPath &lines : {page.cuts, page.marks}) {
                        EXPECT_TRUE(lines.isEmpty() || holds(room, lines.boundingRect()));
                    }
                    for (const Decoration &decoration : page.decorations) {
                        EXPECT_TRUE(room.contains(boundsOf(decoration)));
                        EXPECT_FALSE(boundsOf(decoration).intersects(page.pieces.first().place));
                    }
                }
            }
        }
    }
}

/// Seen after folding: what is printed in the upper half is then at the back of the lower one, with its sides changed
/// over since it is seen from behind, and with its top down. Both together turn it by half.
QPointF unfolded(const PrintPage &page, QPointF point) {
    return {page.size.width() - point.x(), page.size.height() - point.y()};
}

TEST(PaperCrafts, TheFoldedCardHasItsPhotoInFrontAndTheGreetingUprightInside) {
    for (const PrinterPaper &paper : papers) {
        for (const QSize photo : photos) {
            const PrintPage page = layOutCard(paper, photo, contentOf(photo)).sheets.first();
            const double width = page.size.width();
            const double height = page.size.height();
            const QRectF front(width / 2, height / 2, width / 2, height / 2); // its spine is at the left
            ASSERT_EQ(page.pieces.size(), 1);
            EXPECT_TRUE(front.contains(page.pieces[0].place));
            EXPECT_NEAR(page.pieces[0].place.center().x(), front.center().x(), close);
            EXPECT_NEAR(page.pieces[0].place.center().y(), front.center().y(), close);
            ASSERT_EQ(page.decorations.size(), 5);
            const Decoration &greeting = page.decorations[0];
            const Decoration &balloon = page.decorations[1];
            const Decoration &cake = page.decorations[2];
            const Decoration &gift = page.decorations[3];
            const Decoration &maker = page.decorations[4];
            EXPECT_STREQ(stickers()[static_cast<std::size_t>(cake.row)].name, "cake");
            for (const Decoration &inside : {greeting, balloon, cake, gift}) {
                EXPECT_EQ(inside.angle, 180) << "turned by half once more it is upright";
                const QRectF box = boundsOf(inside);
                const QRectF opened(unfolded(page, box.bottomRight()), unfolded(page, box.topLeft()));
                EXPECT_TRUE(front.contains(opened)) << "on the right page";
            }
            EXPECT_LT(unfolded(page, greeting.centre).y(), unfolded(page, cake.centre).y());
            EXPECT_LT(unfolded(page, balloon.centre).x(), unfolded(page, gift.centre).x());
            EXPECT_EQ(maker.angle, 0);
            EXPECT_TRUE(QRectF(0, height / 2, width / 2, height / 2).contains(boundsOf(maker))) << "on the back";
            ASSERT_EQ(page.folds.size(), 2);
            EXPECT_EQ(page.folds[0], QLineF(0, height / 2, width, height / 2));
            EXPECT_EQ(page.folds[1], QLineF(width / 2, 0, width / 2, height));
            EXPECT_FALSE(page.marks.intersects(page.pieces[0].place)) << "no mark in the photo";

            CraftContent content = contentOf(photo);
            content.fromRight = true;
            const PrintPage other = layOutCard(paper, photo, content).sheets.first();
            EXPECT_TRUE(QRectF(0, height / 2, width / 2, height / 2).contains(other.pieces[0].place));
            EXPECT_LT(unfolded(other, other.decorations[0].centre).x(), width / 2) << "the inside's left page";
            EXPECT_EQ(other.decorations[0].angle, 180);
            EXPECT_GT(other.decorations[4].centre.x(), width / 2) << "the back";
            EXPECT_FALSE(other.marks.intersects(other.pieces[0].place));
        }
    }
}

TEST(PaperCrafts, ThePartsOfThePosterMakeThePhotoAndOverlapByAnEqualStrip) {
    for (const PrinterPaper &paper : papers) {
        for (const QSize photo : photos) {
            SCOPED_TRACE(testing::Message()
                         << paper.size.width() << " points wide, photo " << photo.width() << " x " << photo.height());
            const PrintPages pages = layOutPoster(paper, photo, contentOf(photo));
            const auto piece = [&pages](int column, int row) {
                return pages.sheets.at(row * pages.columns + column).pieces.first();
            };
            const double strip = 10 * millimetreOn(paper);
            const int rows = 4 / pages.columns;
            for (int row = 0; row < rows; ++row) {
                for (int column = 0; column < pages.columns; ++column) {
                    const PrintPiece one = piece(column, row);
                    const PrintPiece right = piece(std::min(column + 1, pages.columns - 1), row);
                    const PrintPiece below = piece(column, std::min(row + 1, rows - 1));
                    EXPECT_EQ(one.place, piece(0, 0).place) << "equal sheets";
                    const QSizeF whole = one.wholePlace().size();
                    if (column + 1 < pages.columns) {
                        EXPECT_NEAR((one.part.right() - right.part.left()) * whole.width(), strip, close);
                    } else {
                        EXPECT_NEAR(one.part.right(), 1, 1e-9);
                    }
                    if (row + 1 < rows) {
                        EXPECT_NEAR((one.part.bottom() - below.part.top()) * whole.height(), strip, close);
                    } else {
                        EXPECT_NEAR(one.part.bottom(), 1, 1e-9);
                    }
                    const PrintPage &page = pages.sheets.at(row * pages.columns + column);
                    EXPECT_FALSE(page.marks.intersects(one.place)) << "marks are cut off";
                    const QRectF lines = page.cuts.boundingRect();
                    EXPECT_TRUE(page.cuts.isEmpty() || holds(one.place.adjusted(-close, -close, close, close), lines));
                    ASSERT_EQ(page.decorations.size(), 1);
                    EXPECT_TRUE(
                        page.decorations[0].text.startsWith(QString("%1 of 4").arg(row * pages.columns + column + 1)));
                }
            }
            EXPECT_EQ(piece(0, 0).part.topLeft(), QPointF(0, 0));
        }
    }
    const PrinterPaper a4 = papers[0];
    EXPECT_EQ(layOutPoster(a4, {4000, 3000}, {}).columns, 2);
    EXPECT_EQ(layOutPoster(a4, {3000, 4000}, {}).columns, 2);
    EXPECT_EQ(layOutPoster(a4, {8000, 800}, {}).columns, 4);
    EXPECT_EQ(layOutPoster(a4, {800, 8000}, {}).columns, 1);
    const PrintPages poster = layOutPoster(a4, {4000, 3000}, {});
    EXPECT_GT(poster.sheets.first().pieces.first().wholePlace().width(), 500 * pointsPerMillimetre / 1.1);
    EXPECT_EQ(poster.sheets.first().size, QSizeF(842, 595)) << "the sheets lie";
}

TEST(PaperCrafts, TheMemoryGameHasSixPairsOfEqualCards) {
    for (const PrinterPaper &paper : papers) {
        for (const QSize photo : photos) {
            const CraftContent content = contentOf(photo);
            ASSERT_EQ(content.details.size(), 6);
            const PrintPage page = layOutMemory(paper, photo, content).sheets.first();
            ASSERT_EQ(page.pieces.size(), 12);
            for (const QRectF &detail : content.details) {
                EXPECT_EQ(std::ranges::count(page.pieces, detail, &PrintPiece::part), 2);
            }
            for (const PrintPiece &card : page.pieces) {
                EXPECT_NEAR(card.place.width(), card.place.height(), close);
                EXPECT_EQ(std::ranges::count_if(
                              page.pieces, [&](const PrintPiece &one) { return one.place.intersects(card.place); }),
                          1);
                const double near = 1.5 * card.place.width();
                for (const PrintPiece &other : page.pieces) {
                    const QPointF apart = other.place.center() - card.place.center();
                    if (other.part == card.part && other.place != card.place) {
                        EXPECT_GT(std::hypot(apart.x(), apart.y()), near / 1.1) << "a pair does not lie side by side";
                    }
                }
            }
        }
    }
}

TEST(PaperCrafts, TheDetailsAreThoseThatDiffer) {
    for (const QSize size : {QSize(1200, 900), QSize(900, 1200), QSize(700, 700), QSize(1000, 50), QSize(2, 1000)}) {
        const QList<QRectF> details = differingDetails(striped(size));
        ASSERT_EQ(details.size(), 6);
        for (const QRectF &one : details) {
            EXPECT_NEAR(one.width() * size.width(), one.height() * size.height(), 1e-6) << "square";
            EXPECT_EQ(std::ranges::count_if(details, [&](const QRectF &other) { return other.intersects(one); }), 1);
        }
    }
    // A grey photo with five coloured places, in four columns and three rows.
    QImage picture(1200, 900, QImage::Format_RGB32);
    picture.fill(Qt::gray);
    QPainter painter(&picture);
    const QPoint coloured[] = {{0, 0}, {3, 0}, {1, 1}, {2, 2}, {3, 2}};
    const QColor colours[] = {Qt::red, Qt::green, Qt::blue, Qt::yellow, Qt::black};
    for (int i = 0; i < 5; ++i) {
        painter.fillRect(QRect(coloured[i] * 300, QSize(300, 300)), colours[i]);
    }
    painter.end();
    const QList<QRectF> details = differingDetails(picture);
    for (const QPoint place : coloured) {
        const QPointF centre((place.x() + 0.5) / 4, (place.y() + 0.5) / 3);
        EXPECT_TRUE(std::ranges::any_of(details, [&](const QRectF &one) { return one.contains(centre); }))
            << place.x() << ' ' << place.y();
    }
    EXPECT_TRUE(differingDetails({}).isEmpty());
}

/// The sizes in pixels of the areas, but for specks where lines meet, between the lines of a puzzle that is drawn so
/// large.
QList<int> areasOf(const QSizeF &size, int columns, int rows) {
    QImage picture(size.toSize(), QImage::Format_RGB32);
    picture.fill(Qt::white);
    QPainter painter(&picture);
    painter.setPen(QPen(Qt::black, 2));
    painter.drawPath(jigsawLines(QRectF({}, size), columns, rows));
    painter.end();
    QList<int> areas;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (picture.pixel(x, y) != 0xffffffff) {
                continue;
            }
            areas << 0;
            QList<QPoint> open{{x, y}};
            while (!open.isEmpty()) {
                const QPoint at = open.takeLast();
                if (picture.rect().contains(at) && picture.pixel(at) == 0xffffffff) {
                    picture.setPixel(at, 0xff00ff00);
                    ++areas.last();
                    open << at + QPoint(1, 0) << at - QPoint(1, 0) << at + QPoint(0, 1) << at - QPoint(0, 1);
                }
            }
        }
    }
    areas.removeIf([](int area) { return area < 10; });
    return areas;
}

TEST(PaperCrafts, ThePuzzleFallsIntoItsPiecesAndNothingElse) {
    struct Row {
        QSizeF size;
        int columns, rows;
    };
    const Row grids[] = {
        {{800, 600}, 4, 3}, {{600, 800}, 3, 4}, {{600, 600}, 4, 3}, {{1200, 300}, 6, 2}, {{1200, 90}, 12, 1}};
    for (const Row &grid : grids) {
        const QList<int> areas = areasOf(grid.size, grid.columns, grid.rows);
        EXPECT_EQ(areas.size(), 12) << grid.size.width() << " x " << grid.size.height();
        const double mean = grid.size.width() * grid.size.height() / 12;
        for (const int area : areas) {
            EXPECT_GT(area, mean * 0.6);
            EXPECT_LT(area, mean * 1.4);
        }
    }
    for (const QSize photo : photos) {
        const PrintPage page = layOutPuzzle(papers[0], photo, {}).sheets.first();
        const QRectF place = page.pieces.first().place;
        EXPECT_TRUE(page.cuts.boundingRect().adjusted(-close, -close, close, close).contains(place)) << "its edge, too";
        EXPECT_TRUE(place.adjusted(-close, -close, close, close).contains(page.cuts.boundingRect()));
    }
}

} // namespace
} // namespace lumora
