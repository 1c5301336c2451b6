#include "tools/canvas/KeyboardPointer.h"

#include "view/PhotoView.h"
#include "widgets/Theme.h"

#include <QKeyEvent>
#include <QPainter>
#include <QScrollBar>
#include <algorithm>
#include <utility>

namespace lumora {

namespace {

// pixels of the view
constexpr int step = 8;
constexpr int longStep = 10 * step;
constexpr qreal reach = 12; // of the cross from its middle
constexpr qreal hole = 3;   // what is pointed at can be seen

} // namespace

QPoint arrowStep(int key) {
    switch (key) {
    case Qt::Key_Left:
        return {-1, 0};
    case Qt::Key_Right:
        return {1, 0};
    case Qt::Key_Up:
        return {0, -1};
    case Qt::Key_Down:
        return {0, 1};
    default:
        return {};
    }
}

KeyboardPointer::KeyboardPointer(PhotoView &view, QObject *parent) : QObject(parent), m_view(view) {
    connect(&view, &PhotoView::visiblePartChanged, this, [this] {
        if (isShown()) {
            m_view.viewport()->update(); // scrolling has moved the painted cross
        }
    });
}

bool KeyboardPointer::isMove(const QKeyEvent &key) {
    return !arrowStep(key.key()).isNull() &&
           !(key.modifiers() & ~(Qt::KeypadModifier | Qt::ShiftModifier | Qt::ControlModifier));
}

void KeyboardPointer::move(const QKeyEvent &key, std::optional<QPointF> start) {
    const QRectF room = m_view.viewport()->rect();
    QPointF at = start.value_or(room.intersected(m_view.photoRect()).center()).toPoint(); // where a mouse could be
    if (isShown()) {
        const int length = key.modifiers() & Qt::ControlModifier ? 1
                           : key.modifiers() & Qt::ShiftModifier ? longStep
                                                                 : step;
        at = inView() + QPointF(arrowStep(key.key())) * length;
    }
    scrollTo(at);
    at.setX(std::clamp(at.x(), room.left(), room.right() - 1));
    at.setY(std::clamp(at.y(), room.top(), room.bottom() - 1));
    m_at = m_view.toPicture(at);
    m_view.viewport()->update();
}

/// Scrolls as far as a point beyond the view's edge needs and the photo reaches; the point moves with the photo.
void KeyboardPointer::scrollTo(QPointF &view) {
    const auto along = [](QScrollBar *bar, double at, int length) {
        const int before = bar->value();
        bar->setValue(before + qRound(at - std::clamp<double>(at, 0, length - 1)));
        return bar->value() - before;
    };
    const QSize room = m_view.viewport()->size();
    const int across = along(m_view.horizontalScrollBar(), view.x(), room.width());
    const int down = along(m_view.verticalScrollBar(), view.y(), room.height());
    view -= QPointF(across, down);
}

void KeyboardPointer::hide() {
    if (std::exchange(m_at, {})) {
        m_view.viewport()->update();
    }
}

QPointF KeyboardPointer::inView() const {
    return m_view.toView(inPicture());
}

void KeyboardPointer::paint(QPainter &painter) const {
    if (!isShown()) {
        return;
    }
    const QPointF at = inView();
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    for (const auto &[colour, width] : {std::pair(QColor(Qt::white), 6.0), std::pair(colours::ink, 2.5)}) {
        painter.setPen(QPen(colour, width, Qt::SolidLine, Qt::RoundCap));
        for (const QPointF arm : {QPointF(1, 0), QPointF(-1, 0), QPointF(0, 1), QPointF(0, -1)}) {
            painter.drawLine(at + arm * hole, at + arm * reach);
        }
    }
    painter.restore();
}

} // namespace lumora
