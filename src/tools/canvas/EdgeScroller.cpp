#include "tools/canvas/EdgeScroller.h"

#include <QAbstractScrollArea>
#include <QScrollBar>
#include <QTimerEvent>
#include <algorithm>

namespace lumora {

namespace {

constexpr int interval = 16; // milliseconds: the frame rate of a screen
constexpr int edge = 16;     // pixels inside the view that count as its edge; a full-screen view has nothing outside
constexpr int fastest = 40;  // pixels per interval

/// Pixels to scroll along one axis for a drag from one place to another in a view of that length.
int stepAlong(double from, double to, int length) {
    const auto speed = [](double depth) { return std::clamp(static_cast<int>(depth / 2) + 1, 1, fastest); };
    if (to < from && to < edge) { // a drag from the edge inwards does not scroll
        return -speed(edge - to);
    }
    return to > from && to > length - edge ? speed(to - (length - edge)) : 0;
}

bool scroll(QScrollBar &bar, int step) {
    const int before = bar.value();
    bar.setValue(before + step);
    return bar.value() != before;
}

} // namespace

void EdgeScroller::drag(QPointF from, QPointF to) {
    const QSize view = m_view.viewport()->size();
    m_step = QPoint(stepAlong(from.x(), to.x(), view.width()), stepAlong(from.y(), to.y(), view.height()));
    if (m_step.isNull()) {
        stop();
    } else if (!m_timer.isActive()) {
        m_timer.start(interval, this);
    }
}

void EdgeScroller::timerEvent(QTimerEvent *) {
    const bool across = scroll(*m_view.horizontalScrollBar(), m_step.x());
    const bool down = scroll(*m_view.verticalScrollBar(), m_step.y());
    if (across || down) {
        Q_EMIT scrolled();
    } else {
        stop();
    }
}

} // namespace lumora
