#include "output/print/PagePreview.h"

#include "imaging/Scale.h"
#include "output/print/PageDrawing.h"
#include "widgets/Theme.h"

#include <QPainter>

namespace lumora {

namespace {

constexpr int longestSide = 1000; // pixels of the photo in a preview
constexpr int edge = 8;           // pixels round the sheet, for its shadow

/// Draws the sheet as large as fits into `room`.
void drawSheet(QPainter &painter, const QRectF &room, const PrintPage &page, const QImage &picture) {
    QRectF sheet({}, page.size.scaled(room.size(), Qt::KeepAspectRatio));
    sheet.moveCenter(room.center());
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
    painter.restore();
    painter.setBrush(Qt::NoBrush);
    painter.setPen(colours::line);
    painter.drawRect(sheet);
}

} // namespace

QImage pictureForPreview(const QImage &photo) {
    const QSize size = photo.size().scaled(longestSide, longestSide, Qt::KeepAspectRatio).boundedTo(photo.size());
    return scaled(photo, std::max(1, size.width()), std::max(1, size.height()));
}

QPixmap sheetPixmap(const PrintPage &page, const QImage &picture, QSize size, qreal devicePixelRatio) {
    QPixmap pixmap(size * devicePixelRatio);
    pixmap.setDevicePixelRatio(devicePixelRatio);
    pixmap.fill(Qt::transparent);
    QPainter painter(&pixmap);
    drawSheet(painter, QRectF({}, size).adjusted(3, 3, -3, -3), page, picture);
    return pixmap;
}

PagePreview::PagePreview(const QImage &picture, QSize usual, QWidget *parent)
    : QWidget(parent), m_picture(picture), m_usual(usual) {
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
}

void PagePreview::setPage(const PrintPage &page) {
    m_page = page;
    update();
}

void PagePreview::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    drawSheet(painter, QRectF(rect()).adjusted(edge, edge, -edge, -edge), m_page, m_picture);
}

} // namespace lumora
