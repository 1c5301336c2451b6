// Where photos come to lie on a sheet of paper. Pure computation: the preview, the printer and the PDF file share it.
#pragma once

#include "devices/PrintSystem.h"
#include "imaging/decorations/Decoration.h"

#include <QLineF>
#include <QList>
#include <QPainterPath>
#include <QRectF>
#include <QSize>
#include <QStringList>
#include <vector>

namespace lumora {

struct PaperCraft;

/// What goes with the photo on the paper of a craft.
struct CraftContent {
    QStringList words;
    QList<QRectF> details{}; ///< parts of the photo for a game, in fractions of its width and height
    bool fromRight = false;  ///< people read from the right, so they open a card at its left

    bool operator==(const CraftContent &) const = default;
};

/// How the person wants the page.
struct PrintLayout {
    int photos = 1;                    ///< to a page: 1, 2, 4 or 9, each the same; any other number is 1
    bool centre = true;                ///< in the middle of its part of the page, else in the upper left corner
    bool fit = true;                   ///< as large as its part of the page, else at its own size where that is smaller
    const PaperCraft *craft = nullptr; ///< what is made of the photo instead; null: photos, as above
    CraftContent content{};            ///< of the craft

    bool operator==(const PrintLayout &) const = default;
};

inline constexpr double pointsPerInch = 72;
inline constexpr double pointsPerMillimetre = pointsPerInch / 25.4;

/// The size of a photo that is not fitted: 96 pixels are an inch.
inline constexpr double ownPixelsPerInch = 96;

/// A part of the photo, and where it lies on the sheet.
struct PrintPiece {
    QRectF place;            ///< in points
    QRectF part{0, 0, 1, 1}; ///< in fractions of the photo's width and height

    bool isWhole() const { return part == QRectF(0, 0, 1, 1); }
    /// Where the whole photo would lie.
    QRectF wholePlace() const;
};

/// A page as it is looked at, in points.
struct PrintPage {
    QSizeF size;                           ///< the sheet, turned to lie where the photos get larger so
    QList<PrintPiece> pieces{};            ///< row by row
    QPainterPath cuts{};                   ///< thin lines that are seen on light and on dark: to cut along
    QPainterPath marks{};                  ///< thin lines on the paper: where to fold, to cut or to write
    QList<QLineF> folds{};                 ///< to be seen in the preview, not on the paper
    std::vector<Decoration> decorations{}; ///< words and stickers; points instead of picture pixels
};

/// All that is printed for one copy: sheets of the same size.
struct PrintPages {
    QList<PrintPage> sheets;
    int columns = 1; ///< in which the sheets lie to be looked at, row by row
};

/// A sheet that lies in one of its two ways.
struct LyingSheet {
    QSizeF size;
    QRectF inside; ///< what can be printed on
};

/// The two ways in which a sheet lies, first that of the photo. Opposite margins are both as wide as the wider one, so
/// that the middle is the sheet's and a sheet may come out of the printer either end first.
QList<LyingSheet> waysToLie(const PrinterPaper &paper, QSize photo);

/// Lays out the photo (its size in pixels). The sheet is turned, never the photo: of its two ways to lie and, for two
/// photos, of one beside and one above the other, that is taken in which photos get largest; where it does not matter,
/// the sheet lies like the photo. All photos are whole and of the same size. No pieces for an empty photo. The pages of
/// a craft are its own function's.
PrintPages layOutPages(const PrinterPaper &paper, QSize photo, const PrintLayout &layout);

/// The size in dots of a picture that long at that resolution, at least one each way.
QSize dotsOf(QSizeF points, double dotsPerInch);

} // namespace lumora
