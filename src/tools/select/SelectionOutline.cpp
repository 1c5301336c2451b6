#include "tools/select/SelectionOutline.h"

#include "widgets/Motion.h"

#include <QPainter>
#include <QTimerEvent>
#include <algorithm>
#include <cmath>
#include <numbers>

namespace lumora {

namespace {

constexpr int interval = 125; // milliseconds a step
constexpr int stepLength = 2; // the view's pixels

} // namespace

SelectionOutline::SelectionOutline(PhotoDocument &document, PhotoView &view, QObject *parent)
    : QObject(parent), m_document(document), m_view(view) {
    connect(&document, &PhotoDocument::changed, this, [this](PhotoChanges what) {
        if (what.testFlag(PhotoChange::Selection)) {
            renew();
        }
    });
    // The view repaints the newly exposed part; the scrolled part is already correct.
    connect(&view, &PhotoView::visiblePartChanged, this, &SelectionOutline::trace);
    connect(&view, &PhotoView::paintOverlay, this, &SelectionOutline::paint);
}

void SelectionOutline::addToTrail(PicturePoint point) {
    m_trail.push_back(point);
    if (m_trail.size() == 1) {
        renew();
        return;
    }
    repaint(m_line.lineTo(inDevice({point.x, point.y})));
}

void SelectionOutline::clearTrail() {
    if (!m_trail.empty()) {
        m_trail.clear();
        renew();
    }
}

/// The line has changed: repaints its old and new area.
void SelectionOutline::renew() {
    repaintLine();
    trace();
    repaintLine();
}

QPointF SelectionOutline::inDevice(QPointF picture) const {
    return m_view.toView(picture) * m_view.devicePixelRatioF();
}

/// Builds the line for the photo's current position in the view.
void SelectionOutline::trace() {
    const qreal devicePixels = m_view.devicePixelRatioF();
    const QSizeF surface = QSizeF(m_view.viewport()->size()) * devicePixels;
    m_line.clear(QSize(qCeil(surface.width()), qCeil(surface.height())), devicePixels);
    const PhotoSelection &selection = m_document.selection();
    const auto follow = [this](const auto &points) {
        m_line.moveTo(inDevice({points.front().x, points.front().y}));
        for (const PicturePoint &point : points) {
            m_line.lineTo(inDevice({point.x, point.y}));
        }
    };
    if (!m_trail.empty()) {
        follow(m_trail);
        return;
    }
    if (!selection.isShown()) {
        return;
    }
    const QRectF box(selection.box());
    switch (selection.shape()) {
    case PhotoSelection::Shape::None:
        break;
    case PhotoSelection::Shape::Rectangle:
        m_line.moveTo(inDevice(box.topLeft()));
        for (const QPointF corner : {box.topRight(), box.bottomRight(), box.bottomLeft(), box.topLeft()}) {
            m_line.lineTo(inDevice(corner));
        }
        break;
    case PhotoSelection::Shape::Ellipse:
        traceEllipse(box);
        break;
    case PhotoSelection::Shape::Lasso:
        follow(selection.lassoPoints());
        m_line.lineTo(inDevice({selection.lassoPoints().front().x, selection.lassoPoints().front().y}));
        break;
    }
}

void SelectionOutline::traceEllipse(const QRectF &box) {
    const QRectF place(inDevice(box.topLeft()), inDevice(box.bottomRight()));
    const double radius = std::max(place.width(), place.height()) / 2;
    // Enough segments to stay within a tenth of a pixel of the curve: the sagitta of an arc is radius * angle^2 / 8.
    const int strokes = std::max(16, qCeil(std::numbers::pi * std::sqrt(5 * radius)));
    for (int i = 0; i <= strokes; ++i) {
        const double angle = 2 * std::numbers::pi * i / strokes;
        const QPointF at =
            place.center() + QPointF(std::cos(angle) * place.width() / 2, std::sin(angle) * place.height() / 2);
        if (i == 0) {
            m_line.moveTo(at);
        } else {
            m_line.lineTo(at);
        }
    }
}

void SelectionOutline::repaint(const QRect &devicePart) {
    if (!devicePart.isEmpty()) {
        const qreal devicePixels = m_view.devicePixelRatioF();
        const QRectF part(QPointF(devicePart.topLeft()) / devicePixels, QSizeF(devicePart.size()) / devicePixels);
        m_view.viewport()->update(part.toAlignedRect());
    }
}

void SelectionOutline::repaintLine() {
    for (const QRect &part : m_line.parts()) {
        repaint(part);
    }
}

void SelectionOutline::paint(QPainter &painter) {
    if (m_line.isEmpty()) {
        return;
    }
    m_line.paint(painter, m_step);
    if (!m_timer.isActive() && motionWanted()) {
        m_timer.start(interval, this);
    }
}

void SelectionOutline::timerEvent(QTimerEvent *) {
    if (m_line.isEmpty() || !m_view.isVisible() || !motionWanted()) {
        m_timer.stop(); // the next painting starts it again
        return;
    }
    m_step += stepLength;
    repaintLine();
}

} // namespace lumora
