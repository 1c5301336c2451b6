#include "tools/colour-focus/ColourFocusSwatch.h"

#include "widgets/Theme.h"

#include <QPainter>

namespace lumora {

namespace {

constexpr int swatchSide = 64; // pixels
constexpr int dropperSide = 32;

} // namespace

ColourFocusSwatch::ColourFocusSwatch(QWidget *parent) : QWidget(parent) {
    setObjectName("picChosenColour");
    setFixedSize(swatchSide, swatchSide);
}

void ColourFocusSwatch::setColour(const QColor &colour) {
    m_colour = colour;
    update();
}

void ColourFocusSwatch::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF place = QRectF(rect()).adjusted(2, 2, -2, -2);
    if (m_colour.isValid()) {
        painter.setPen(QPen(colours::ink, 3));
        painter.setBrush(m_colour);
        painter.drawRoundedRect(place, buttonCorner, buttonCorner);
        return;
    }
    painter.setPen(QPen(colours::faintInk, 3, Qt::DashLine));
    painter.setBrush(colours::paper);
    painter.drawRoundedRect(place, buttonCorner, buttonCorner);
    const QPoint corner = rect().center() - QPoint(dropperSide / 2, dropperSide / 2);
    painter.drawPixmap(corner, iconPixmap(":/cursors/target2.svg", dropperSide, devicePixelRatioF()));
}

} // namespace lumora
