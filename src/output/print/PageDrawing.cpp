#include "output/print/PageDrawing.h"

#include "base/Colours.h"
#include "base/TaskControl.h"
#include "imaging/Picture.h"
#include "imaging/Scale.h"
#include "imaging/decorations/PaintDecoration.h"

#include <QPageLayout>
#include <QPainter>
#include <QPdfWriter>
#include <algorithm>
#include <cmath>

namespace lumora {

namespace {

constexpr double mostDots = 40e6;    // of a page: 160 MB
constexpr int mostDotsAside = 32767; // dots of the photo: Qt paints no more
constexpr double thinLine = 0.6;     // points
constexpr QColor markColour(120, 120, 120);
constexpr int pdfDots = 1200; // an inch; the fineness of positions, not of the picture

QImage onWhite(const QImage &picture) {
    if (!picture.hasAlphaChannel()) {
        return picture;
    }
    QImage white = newPicture(picture.width(), picture.height());
    if (!white.isNull()) {
        white.fill(Qt::white);
        QPainter(&white).drawImage(0, 0, picture);
    }
    return white;
}

double squareInches(QSizeF points) {
    return points.width() * points.height() / (pointsPerInch * pointsPerInch);
}

void drawPiece(QPainter &painter, const PrintPiece &piece, const QImage &picture) {
    if (piece.isWhole()) {
        painter.drawImage(piece.place, picture);
        return;
    }
    // The whole picture, clipped: so a PDF document stores it once, whatever parts of it the pages show.
    painter.save();
    painter.setClipRect(piece.place, Qt::IntersectClip);
    painter.drawImage(piece.wholePlace(), picture);
    painter.restore();
}

void drawLines(QPainter &painter, const QPainterPath &lines, const QColor &colour, double width) {
    if (!lines.isEmpty()) {
        painter.strokePath(lines, QPen(colour, width, Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin));
    }
}

void tell(int done, int total) {
    if (TaskControl *control = TaskControl::current()) {
        control->setProgress(done, total);
    }
}

} // namespace

void drawPage(QPainter &painter, const PrintPage &page, const QImage &picture) {
    for (const PrintPiece &piece : page.pieces) {
        drawPiece(painter, piece, picture);
    }
    const double dot = 1 / std::sqrt(std::abs(painter.combinedTransform().determinant()));
    const double thin = std::max(thinLine, dot); // also to be seen in a small preview
    drawLines(painter, page.marks, markColour, thin);
    drawLines(painter, page.cuts, Qt::white, 3 * thin);
    drawLines(painter, page.cuts, colours::ink, thin);
    StickerDrawings drawings;
    for (const Decoration &decoration : page.decorations) {
        paintDecoration(painter, shapeOf(decoration), placeOf(decoration), drawings);
    }
}

QImage pictureForPages(const QImage &photo, const PrintPages &pages, double dotsPerInch) {
    QSizeF largest;
    double inches = 0; // square inches of a page, or of the whole photo
    for (const PrintPage &page : pages.sheets) {
        inches = std::max(inches, squareInches(page.size));
        for (const PrintPiece &piece : page.pieces) {
            largest = largest.expandedTo(piece.wholePlace().size());
        }
    }
    if (largest.isEmpty()) {
        return {};
    }
    inches = std::max(inches, squareInches(largest));
    const double longest = std::max(largest.width(), largest.height()) / pointsPerInch;
    const QSize dots = dotsOf(largest, std::min({dotsPerInch, std::sqrt(mostDots / inches), mostDotsAside / longest}));
    return onWhite(scaled(photo, dots.width(), dots.height()));
}

bool writePages(QIODevice &device, const PrintPages &pages, const QImage &picture, int copies, const QString &title) {
    QPdfWriter writer(&device);
    writer.setTitle(title);
    writer.setCreator(title);
    writer.setResolution(pdfDots);
    const QSizeF sheet = pages.sheets.first().size;
    const bool wide = sheet.width() > sheet.height();
    const QPageSize size(wide ? sheet.transposed() : sheet, QPageSize::Point);
    writer.setPageLayout({size, wide ? QPageLayout::Landscape : QPageLayout::Portrait, {}, QPageLayout::Point});
    QPainter painter(&writer);
    painter.scale(pdfDots / pointsPerInch, pdfDots / pointsPerInch);
    const int sheets = static_cast<int>(pages.sheets.size());
    for (int i = 0; i < copies * sheets; ++i) {
        if (i > 0) {
            writer.newPage();
        }
        drawPage(painter, pages.sheets.at(i % sheets), picture);
        tell(i + 1, copies * sheets + 1);
        if (TaskControl::isCurrentCancelled()) {
            return false;
        }
    }
    return painter.end();
}

} // namespace lumora
