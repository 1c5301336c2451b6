#include "output/print/PageDrawing.h"

#include "base/TaskControl.h"
#include "imaging/Picture.h"
#include "imaging/Scale.h"

#include <QPageLayout>
#include <QPainter>
#include <QPdfWriter>
#include <algorithm>
#include <cmath>

namespace lumora {

namespace {

constexpr double mostDots = 40e6; // of a page: 160 MB
constexpr int pdfDots = 1200;     // an inch; the fineness of positions, not of the picture

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

void tell(int done, int total) {
    if (TaskControl *control = TaskControl::current()) {
        control->setProgress(done, total);
    }
}

} // namespace

void drawPage(QPainter &painter, const PrintPage &page, const QImage &picture) {
    for (const QRectF &place : page.places) {
        painter.drawImage(place, picture);
    }
}

QImage pictureForPage(const QImage &photo, const PrintPage &page, double dotsPerInch) {
    if (page.places.isEmpty()) {
        return {};
    }
    const double inches = page.size.width() * page.size.height() / (pointsPerInch * pointsPerInch);
    const QSize dots = dotsOf(page.places.first().size(), std::min(dotsPerInch, std::sqrt(mostDots / inches)));
    return onWhite(scaled(photo, dots.width(), dots.height()));
}

bool writePages(QIODevice &device, const PrintPage &page, const QImage &picture, int copies, const QString &title) {
    QPdfWriter writer(&device);
    writer.setTitle(title);
    writer.setCreator(title);
    writer.setResolution(pdfDots);
    const bool wide = page.size.width() > page.size.height();
    const QPageSize size(wide ? page.size.transposed() : page.size, QPageSize::Point);
    writer.setPageLayout({size, wide ? QPageLayout::Landscape : QPageLayout::Portrait, {}, QPageLayout::Point});
    QPainter painter(&writer);
    painter.scale(pdfDots / pointsPerInch, pdfDots / pointsPerInch);
    for (int copy = 0; copy < copies; ++copy) {
        if (copy > 0) {
            writer.newPage();
        }
        drawPage(painter, page, picture);
        tell(copy + 1, copies + 1);
        if (TaskControl::isCurrentCancelled()) {
            return false;
        }
    }
    return painter.end();
}

} // namespace lumora
