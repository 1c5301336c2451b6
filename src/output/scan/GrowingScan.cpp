#include "output/scan/GrowingScan.h"

#include "widgets/Theme.h"

#include <QPainter>
#include <algorithm>

namespace lumora {

namespace {

constexpr int margin = 24;     // pixels of table round the sheet, as round a fitted photo
constexpr int lampHeight = 14; // pixels of light at the line that is being read

} // namespace

GrowingScan::GrowingScan(QWidget *window) : QWidget(window) {
    setObjectName("picScan");
    setAttribute(Qt::WA_OpaquePaintEvent);
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
}

void GrowingScan::begin() {
    m_picture = QImage();
    m_height = -1;
    m_lines = 0;
    m_active = true;
}

void GrowingScan::add(const ScanStrip &strip) {
    if (!m_active) {
        return;
    }
    m_height = strip.height;
    m_factor = strip.factor;
    m_lines = strip.top + strip.picture.height();
    if (m_picture.height() < m_lines) {
        // White paper below; where its length is not known, room for as much again.
        const int room = m_height > 0 ? std::max(m_height, m_lines) : 2 * m_lines;
        QImage taller(strip.picture.width(), room, QImage::Format_RGB32);
        taller.fill(Qt::white);
        QPainter(&taller).drawImage(0, 0, m_picture);
        m_picture = taller;
    }
    QPainter(&m_picture).drawImage(0, strip.top, strip.picture);
    show();
    update();
}

void GrowingScan::end() {
    m_active = false;
    m_picture = QImage();
    hide();
}

/// Where the paper is: as large as the photo will be, if that fits.
QRectF GrowingScan::sheet() const {
    const QSizeF whole(m_picture.width(), m_height > 0 ? m_picture.height() : m_lines);
    const QRectF room = QRectF(rect()).adjusted(margin, margin, -margin, -margin);
    QSizeF size = whole.scaled(room.size(), Qt::KeepAspectRatio);
    if (size.width() > whole.width() * m_factor) {
        size = whole * m_factor;
    }
    QRectF place(QPointF(), size);
    place.moveCenter(room.center());
    return place;
}

void GrowingScan::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    const QRectF paper = sheet();
    m_table.paintTable(painter, rect(), paper, QPointF(), devicePixelRatioF());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const double scale = paper.width() / m_picture.width();
    painter.drawImage(paper, m_picture, QRectF(0, 0, m_picture.width(), paper.height() / scale));
    const double at = paper.top() + m_lines * scale;
    if (m_height > 0 && m_lines < m_height) {
        QLinearGradient light(0, at, 0, at + lampHeight);
        QColor sun = colours::sun;
        light.setColorAt(0, sun);
        sun.setAlpha(0);
        light.setColorAt(1, sun);
        painter.fillRect(QRectF(paper.left(), at, paper.width(), std::min<double>(lampHeight, paper.bottom() - at)),
                         light);
    }
}

} // namespace lumora
