// Draws a page: for the preview, for the printer and for a PDF file.
#pragma once

#include "output/print/PageLayout.h"

#include <QImage>

class QIODevice;
class QPainter;

namespace lumora {

/// Draws what is on the page. The painter's unit is the point, its origin the upper left corner of the sheet;
/// `picture` is the photo at any size.
void drawPage(QPainter &painter, const PrintPage &page, const QImage &picture);

/// The photo as the pages need it: on white, resampled once to the dots that it gets at that resolution. The
/// resolution is lowered where a page or the photo would have more than 40 million dots. A null picture when memory is
/// refused and where there is nothing to draw.
QImage pictureForPages(const QImage &photo, const PrintPages &pages, double dotsPerInch);

/// Writes a PDF document of so many copies of the pages (1 or more); the picture is stored once. Reports progress to
/// the thread's current TaskControl. False when that is cancelled; errors of the device are the caller's to find.
bool writePages(QIODevice &device, const PrintPages &pages, const QImage &picture, int copies, const QString &title);

} // namespace lumora
