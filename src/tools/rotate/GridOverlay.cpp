#include "tools/rotate/GridOverlay.h"

#include "view/PhotoView.h"

#include <QPainter>
#include <QVarLengthArray>

namespace lumora {

namespace {

// Pixels of the screen, whatever the zoom.
constexpr int spacing = 80;
constexpr int opacity = 110;    // of 255: a help that does not cover the photo
constexpr int lastLine = 12000; ///< no lines beyond this on a larger canvas

} // namespace

GridOverlay::GridOverlay(PhotoView &view, QObject *parent) : QObject(parent), m_view(view) {
    connect(&view, &PhotoView::paintOverlay, this, &GridOverlay::paint);
    connect(&view, &PhotoView::visiblePartChanged, this, [this] {
        if (m_shown) {
            m_view.viewport()->update(); // the view scrolled the lines with the photo
        }
    });
}

void GridOverlay::DrawGrid() {
    GridPen = QPen(QColor(192, 192, 0, opacity), 1);
    m_shown = true;
    m_view.viewport()->update();
}

void GridOverlay::HideGrid() {
    m_shown = false;
    m_view.viewport()->update();
}

void GridOverlay::paint(QPainter &painter) const {
    if (!m_shown) {
        return;
    }
    const qreal devicePixels = m_view.devicePixelRatioF();
    const QSize canvas = (QSizeF(m_view.viewport()->size()) * devicePixels).toSize();
    QVarLengthArray<QLine, 64> lines;
    for (int i = 0; i <= lastLine; i += spacing) {
        if (i < canvas.width()) {
            lines.append(QLine(i, 0, i, canvas.height()));
        }
        if (i < canvas.height()) {
            lines.append(QLine(0, i, canvas.width(), i));
        }
    }
    painter.save();
    painter.scale(1 / devicePixels, 1 / devicePixels);
    painter.setPen(GridPen);
    painter.drawLines(lines.constData(), static_cast<int>(lines.size()));
    painter.restore();
}

} // namespace lumora
