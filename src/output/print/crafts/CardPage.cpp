// The card that is folded twice; CraftPages.h says how its quarters lie.
#include "output/print/crafts/CraftPages.h"

#include "imaging/decorations/StickerTable.h"

#include <algorithm>
#include <cstring>

namespace lumora {

namespace {

constexpr double cardMargin = 8;    // millimetres, where the printer leaves no more white
constexpr double foldTick = 5;      // millimetres
constexpr double greetingLine = 30; // millimetres, of its letters at most
constexpr double makerLine = 5;     // millimetres

// Of the inside's height, from its top.
constexpr double greetingEnd = 0.38;
constexpr double partyBegin = 0.41;
constexpr double partyEnd = 0.71;
constexpr double partyStep = 1.2; // from sticker to sticker, of their size
constexpr double writingLines[] = {0.80, 0.90, 1.00};

double marginOf(const LyingSheet &sheet, double millimetre) {
    return std::max({sheet.inside.left(), sheet.inside.top(), cardMargin * millimetre});
}

Decoration sticker(const char *name, QPointF centre, double side, double angle) {
    const auto rows = stickers();
    const auto found =
        std::ranges::find_if(rows, [name](const StickerRow &row) { return std::strcmp(row.name, name) == 0; });
    return {.kind = Decoration::Kind::Sticker,
            .row = static_cast<int>(found - rows.begin()),
            .text = {},
            .centre = centre,
            .size = side,
            .angle = angle,
            .speaker = {}};
}

/// The right page of the inside: the upper left quarter, on its head.
void addGreeting(PrintPage &page, const QRectF &quarter, double margin, double millimetre, const QString &greeting) {
    const QRectF inside = quarter.adjusted(margin, margin, -margin, -margin);
    // From its top, as the opened card is read, to its bottom.
    const auto at = [&inside](double part) { return inside.bottom() - part * inside.height(); };
    const auto band = [&](double from, double to) {
        return QRectF(QPointF(inside.left(), at(to)), QPointF(inside.right(), at(from)));
    };
    addWords(page, greeting, "poster", band(0, greetingEnd), greetingLine * millimetre, 180);
    const QRectF party = band(partyBegin, partyEnd);
    const double step = std::min(party.width() / 3, party.height() * partyStep);
    double x = party.center().x() + step; // the first is at the right of what stands on its head
    for (const char *name : {"balloon", "cake", "gift"}) {
        page.decorations.push_back(sticker(name, {x, party.center().y()}, step / partyStep, 180));
        x -= step;
    }
    for (const double part : writingLines) {
        addLine(page.marks, {inside.left(), at(part)}, {inside.right(), at(part)});
    }
}

/// The back: the lower left quarter.
void addMaker(PrintPage &page, const QRectF &quarter, double margin, double millimetre, const QString &madeBy) {
    const double y = quarter.bottom() - margin;
    const double half = quarter.width() / 5;
    addLine(page.marks, {quarter.center().x() - half, y}, {quarter.center().x() + half, y});
    const double high = makerLine * millimetre;
    addWords(page, madeBy, "plain", {quarter.left() + margin, y - high - margin, quarter.width() - 2 * margin, high},
             high);
}

void addFolds(PrintPage &page, const QRectF &inside, double tick) {
    const QPointF middle = inside.center();
    page.folds << QLineF(0, middle.y(), page.size.width(), middle.y())
               << QLineF(middle.x(), 0, middle.x(), page.size.height());
    addLine(page.marks, {inside.left(), middle.y()}, {inside.left() + tick, middle.y()});
    addLine(page.marks, {inside.right() - tick, middle.y()}, {inside.right(), middle.y()});
    addLine(page.marks, {middle.x(), inside.top()}, {middle.x(), inside.top() + tick});
    addLine(page.marks, {middle.x(), inside.bottom() - tick}, {middle.x(), inside.bottom()});
}

/// Changes left and right over, but not what stands there.
void changeSides(PrintPage &page) {
    const double width = page.size.width();
    for (PrintPiece &piece : page.pieces) {
        piece.place.moveLeft(width - piece.place.right());
    }
    for (Decoration &decoration : page.decorations) {
        decoration.centre.setX(width - decoration.centre.x());
    }
    page.marks = QTransform(-1, 0, 0, 1, width, 0).map(page.marks);
}

} // namespace

PrintPages layOutCard(const PrinterPaper &paper, QSize photo, const CraftContent &content) {
    const double millimetre = millimetreOn(paper);
    const auto [sheet, size] = largestPhoto(paper, photo, [millimetre](const LyingSheet &way) {
        const double margin = 2 * marginOf(way, millimetre);
        return way.size / 2 - QSizeF(margin, margin);
    });
    const double margin = marginOf(sheet, millimetre);
    const QSizeF quarter = sheet.size / 2;
    PrintPage page{.size = sheet.size};
    QRectF front({}, size);
    front.moveCenter({sheet.size.width() * 0.75, sheet.size.height() * 0.75});
    page.pieces << PrintPiece{front};
    addGreeting(page, {{0, 0}, quarter}, margin, millimetre, content.words.value(0));
    addMaker(page, {{0, quarter.height()}, quarter}, margin, millimetre, content.words.value(1));
    addFolds(page, sheet.inside, foldTick * millimetre);
    if (content.fromRight) {
        changeSides(page);
    }
    return {{page}};
}

} // namespace lumora
