#include "output/print/PagePreview.h"

#include "imaging/Scale.h"
#include "output/print/PageDrawing.h"
#include "widgets/Theme.h"

#include <QPainter>

namespace lumora {

namespace {

constexpr int longestSide = 1000; // pixels of the photo in a preview
constexpr int edge = 8;           // pixels round the sheet, for its shadow
constexpr double foldLine = 1.5;  // pixels
constexpr double sheetGap = 0.05; // between two sheets, of their longer side

void drawSheet(QPainter &painter, const QRectF &sheet, const PrintPage &page, const QImage &picture) {
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    painter.setPen(Qt::NoPen);
    for (int spread = edge / 2; spread > 0; --spread) {
        painter.setBrush(QColor(0, 0, 0, 10));
        painter.drawRoundedRect(sheet.adjusted(-spread, -spread, spread, spread).translated(0, 1.5), spread, spread);
    }
    painter.fillRect(sheet, Qt::white);
    painter.save();
    painter.translate(sheet.topLeft());
    painter.scale(sheet.width() / page.size.width(), sheet.height() / page.size.height());
    drawPage(painter, page, picture);
    QPen fold(colours::sky, foldLine, Qt::DashLine);
    fold.setCosmetic(true);
    painter.setPen(fold);
    painter.drawLines(page.folds);
    painter.restore();
    painter.setBrush(Qt::NoBrush);
    painter.setPen(colours::line);
    painter.drawRect(sheet);
}

/// Draws the sheets beside one another as large as fits into `room`.
void drawSheets(QPainter &painter, const QRectF &room, const PrintPages &pages, const QImage &picture) {
    if (pages.sheets.isEmpty()) {
        return;
    }
    const QSizeF size = pages.sheets.first().size;
    const int rows = static_cast<int>(pages.sheets.size() + pages.columns - 1) / pages.columns;
    const double between = std::max(size.width(), size.height()) * sheetGap;
    const QSizeF step = size + QSizeF(between, between);
    const QSizeF all(pages.columns * step.width() - between, rows * step.height() - between);
    QRectF table({}, all.scaled(room.size(), Qt::KeepAspectRatio));
    table.moveCenter(room.center());
    const double scale = table.width() / all.width();
    for (int i = 0; i < static_cast<int>(pages.sheets.size()); ++i) {
        const int column = i % pages.columns;
        const int row = i / pages.columns;
        const QPointF corner(column * step.width() * scale, row * step.height() * scale);
        drawSheet(painter, {table.topLeft() + corner, size * scale}, pages.sheets.at(i), picture);
    }
}

} // namespace

QImage pictureForPreview(const QImage &photo) {
    const QSize size = photo.size().scaled(longestSide, longestSide, Qt::KeepAspectRatio).boundedTo(photo.size());
    return scaled(photo, std::max(1, size.width()), std::max(1, size.height()));
}

QPixmap sheetPixmap(const PrintPages &pages, const QImage &picture, QSize size, qreal devicePixelRatio) {
    QPixmap pixmap(size * devicePixelRatio);
    pixmap.setDevicePixelRatio(devicePixelRatio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    drawSheets(painter, QRectF({}, size).adjusted(3, 3, -3, -3), pages, picture);
    return pixmap;
}

PagePreview::PagePreview(const QImage &picture, QSize usual, QWidget *parent)
    : QWidget(parent), m_picture(picture), m_usual(usual) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void PagePreview::setPages(const PrintPages &pages) {
    m_pages = pages;
    update();
}

void PagePreview::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    drawSheets(painter, QRectF(rect()).adjusted(edge, edge, -edge, -edge), m_pages, m_picture);
}

} // namespace lumora
