#include "output/scan/ScanGlass.h"

#include "widgets/ClickMoveClick.h"
#include "widgets/Theme.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScreen>
#include <algorithm>
#include <array>
#include <cmath>

namespace lumora {

namespace {

// pixels
constexpr int body = 26; ///< plastic round the glass
constexpr int bodyCorner = 22;
constexpr int knob = 7;   ///< radius of a frame's handles
constexpr int reach = 14; ///< from a frame's edge at which the pointer has hold of it
constexpr int lamp = 18;

constexpr int lampTick = 30;      // milliseconds
constexpr int lampPeriod = 90;    // ticks to and fro
constexpr double smallest = 0.03; ///< side of a frame, as a share of the glass's longer side

constexpr QColor plastic(92, 88, 112);
constexpr QColor plasticEdge(62, 58, 82);
constexpr QColor glassTop(226, 240, 248);
constexpr QColor glassBottom(196, 220, 234);

} // namespace

ScanGlass::ScanGlass(QWidget *parent) : QWidget(parent) {
    setObjectName("picScanGlass");
    setMouseTracking(true);
    setLayoutDirection(Qt::LeftToRight); // as the paper lies
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    m_area = QRectF(QPointF(), m_glass);
}

void ScanGlass::setGlass(const QSizeF &size, bool hasArea) {
    m_hasArea = hasArea;
    setFocusPolicy(hasArea ? Qt::StrongFocus : Qt::NoFocus);
    setDraggable(*this, hasArea);
    if (size != m_glass) {
        m_glass = size;
        m_preview = QImage();
        m_area = QRectF(QPointF(), m_glass);
    }
    update();
}

void ScanGlass::setArea(const QRectF &area) {
    m_area = area.intersected(QRectF(QPointF(), m_glass));
    update();
}

void ScanGlass::showPreview(const QImage &picture, double share) {
    m_preview = picture;
    m_share = share;
    update();
}

void ScanGlass::setMessage(const QString &text) {
    m_message = text;
    if (!text.isEmpty()) {
        setAccessibleName(text); // later the last sentence is still the best that can be said of it
    }
    update();
}

void ScanGlass::setWaiting(bool waiting) {
    if (waiting && m_timer == 0) {
        m_step = 0;
        m_timer = startTimer(lampTick);
    } else if (!waiting && m_timer != 0) {
        killTimer(m_timer);
        m_timer = 0;
    }
    update();
}

void ScanGlass::timerEvent(QTimerEvent *) {
    m_step = (m_step + 1) % lampPeriod;
    update();
}

QSize ScanGlass::sizeHint() const {
    const int height = screen()->availableGeometry().height() * 6 / 10;
    return {height * 9 / 10, height};
}

// --- Places ---------------------------------------------------------------------------------------------------------

QRectF ScanGlass::glassPlace() const {
    const QRectF room = QRectF(rect()).adjusted(body, body, -body, -body);
    QRectF place(QPointF(), m_glass.scaled(room.size(), Qt::KeepAspectRatio));
    place.moveCenter(room.center());
    return place;
}

QRectF ScanGlass::areaPlace() const {
    const QRectF glass = glassPlace();
    const double scale = glass.width() / m_glass.width();
    return {glass.topLeft() + m_area.topLeft() * scale, m_area.size() * scale};
}

QPointF ScanGlass::toGlass(QPointF at) const {
    const QRectF glass = glassPlace();
    const QPointF point = (at - glass.topLeft()) * (m_glass.width() / glass.width());
    return {std::clamp(point.x(), 0.0, m_glass.width()), std::clamp(point.y(), 0.0, m_glass.height())};
}

ScanGlass::Grip ScanGlass::gripAt(QPointF at) const {
    const QRectF frame = areaPlace();
    Grip grip;
    if (!frame.adjusted(-reach, -reach, reach, reach).contains(at)) {
        return grip;
    }
    grip.left = std::abs(at.x() - frame.left()) <= reach ? 1 : 0;
    grip.right = grip.left == 0 && std::abs(at.x() - frame.right()) <= reach ? 1 : 0;
    grip.top = std::abs(at.y() - frame.top()) <= reach ? 1 : 0;
    grip.bottom = grip.top == 0 && std::abs(at.y() - frame.bottom()) <= reach ? 1 : 0;
    // Inside a frame that leaves some of the glass, all of it moves. A frame round everything is drawn again.
    if (grip.isNone() && m_area != QRectF(QPointF(), m_glass)) {
        grip = {1, 1, 1, 1};
    }
    return grip;
}

void ScanGlass::showCursor(const Grip &grip) {
    if (!m_hasArea) {
        unsetCursor();
    } else if (grip.left + grip.right == 2) {
        setCursor(Qt::SizeAllCursor);
    } else if (grip.left + grip.right + grip.top + grip.bottom == 2) {
        setCursor(grip.left == grip.top ? Qt::SizeFDiagCursor : Qt::SizeBDiagCursor);
    } else if (grip.left + grip.right == 1) {
        setCursor(Qt::SizeHorCursor);
    } else if (grip.top + grip.bottom == 1) {
        setCursor(Qt::SizeVerCursor);
    } else {
        setCursor(Qt::CrossCursor);
    }
}

// --- Mouse and keys -------------------------------------------------------------------------------------------------

void ScanGlass::mousePressEvent(QMouseEvent *event) {
    if (!m_hasArea || event->button() != Qt::LeftButton) {
        return;
    }
    m_pressed = true;
    m_grip = gripAt(event->position());
    m_drawing = m_grip.isNone();
    m_from = toGlass(event->position());
    m_atPress = m_area;
}

void ScanGlass::mouseMoveEvent(QMouseEvent *event) {
    if (!m_pressed) {
        showCursor(gripAt(event->position()));
        return;
    }
    const QPointF at = toGlass(event->position());
    const double side = smallest * std::max(m_glass.width(), m_glass.height());
    QRectF next;
    if (m_drawing) {
        next = QRectF(m_from, at).normalized();
        if (next.width() < side || next.height() < side) {
            return; // a click, or a trembling hand
        }
    } else {
        const QPointF moved = at - m_from;
        next = m_atPress.adjusted(m_grip.left * moved.x(), m_grip.top * moved.y(), m_grip.right * moved.x(),
                                  m_grip.bottom * moved.y());
        if (m_grip.left + m_grip.right + m_grip.top + m_grip.bottom == 4) { // it stops at the glass's edges
            next.moveLeft(std::clamp(next.left(), 0.0, m_glass.width() - next.width()));
            next.moveTop(std::clamp(next.top(), 0.0, m_glass.height() - next.height()));
        }
        if (next.width() < side || next.height() < side) {
            return;
        }
    }
    setArea(next);
    Q_EMIT areaDrawn();
}

void ScanGlass::mouseReleaseEvent(QMouseEvent *event) {
    if (event->button() == Qt::LeftButton) {
        m_pressed = false;
        showCursor(gripAt(event->position()));
    }
}

void ScanGlass::keyPressEvent(QKeyEvent *event) {
    QPointF step;
    const double unit = std::max(m_glass.width(), m_glass.height()) / 100;
    switch (event->key()) {
    case Qt::Key_Left:
        step = {-unit, 0};
        break;
    case Qt::Key_Right:
        step = {unit, 0};
        break;
    case Qt::Key_Up:
        step = {0, -unit};
        break;
    case Qt::Key_Down:
        step = {0, unit};
        break;
    default:
        QWidget::keyPressEvent(event);
        return;
    }
    QRectF next = m_area;
    if (event->modifiers() & Qt::ShiftModifier) {
        next.setBottomRight(next.bottomRight() + step);
    } else {
        next.translate(step);
        next.moveLeft(std::clamp(next.left(), 0.0, m_glass.width() - next.width()));
        next.moveTop(std::clamp(next.top(), 0.0, m_glass.height() - next.height()));
    }
    if (next.width() > unit && next.height() > unit) {
        setArea(next);
        Q_EMIT areaDrawn();
    }
}

// --- Painting -------------------------------------------------------------------------------------------------------

void ScanGlass::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const QRectF glass = glassPlace();
    paintBody(painter, glass);
    if (!m_preview.isNull()) {
        painter.drawImage(QRectF(glass.topLeft(), QSizeF(glass.width(), glass.height() * m_share)), m_preview);
    }
    if (m_hasArea) {
        paintFrame(painter, glass);
    }
    paintLamp(painter, glass);
    if (!m_message.isEmpty()) {
        paintMessage(painter, glass);
    }
}

void ScanGlass::paintBody(QPainter &painter, const QRectF &glass) const {
    const QRectF shell = glass.adjusted(-body + 2, -body + 2, body - 2, body - 2);
    painter.setPen(QPen(plasticEdge, 3));
    painter.setBrush(plastic);
    painter.drawRoundedRect(shell, bodyCorner, bodyCorner);
    // The corner where the paper belongs.
    const QPointF corner = glass.topLeft() - QPointF(10, 10);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colours::sun);
    painter.drawPolygon(QPolygonF({corner, corner + QPointF(13, 0), corner + QPointF(0, 13)}));
    QLinearGradient shine(glass.topLeft(), glass.bottomRight());
    shine.setColorAt(0, glassTop);
    shine.setColorAt(1, glassBottom);
    painter.setPen(QPen(plasticEdge, 2));
    painter.setBrush(shine);
    painter.drawRect(glass);
    painter.save();
    painter.setClipRect(glass);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(255, 255, 255, 70));
    const double width = glass.width();
    for (const auto &[from, to] : {std::pair(0.55, 0.72), std::pair(0.78, 0.83)}) {
        painter.drawPolygon(
            QPolygonF({glass.topLeft() + QPointF(from * width, 0), glass.topLeft() + QPointF(to * width, 0),
                       glass.bottomLeft() + QPointF((to - 0.5) * width, 0),
                       glass.bottomLeft() + QPointF((from - 0.5) * width, 0)}));
    }
    painter.restore();
}

void ScanGlass::paintFrame(QPainter &painter, const QRectF &glass) const {
    const QRectF frame = areaPlace();
    QPainterPath outside;
    outside.addRect(glass);
    QPainterPath inside;
    inside.addRect(frame);
    QColor shade = colours::ink;
    shade.setAlpha(110);
    painter.fillPath(outside.subtracted(inside), shade);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(Qt::white, 5));
    painter.drawRect(frame);
    painter.setPen(QPen(hasFocus() ? colours::plum : colours::sky, 3, Qt::DashLine));
    painter.drawRect(frame);
    painter.setPen(QPen(colours::ink, 2));
    painter.setBrush(colours::sun);
    const QPointF middle = frame.center();
    const std::array<QPointF, 8> knobs = {frame.topLeft(),     QPointF(middle.x(), frame.top()),
                                          frame.topRight(),    QPointF(frame.right(), middle.y()),
                                          frame.bottomRight(), QPointF(middle.x(), frame.bottom()),
                                          frame.bottomLeft(),  QPointF(frame.left(), middle.y())};
    for (const QPointF &at : knobs) {
        painter.drawEllipse(at, knob, knob);
    }
}

/// A sentence on a label in the middle of the glass.
void ScanGlass::paintMessage(QPainter &painter, const QRectF &glass) const {
    const QRectF room = glass.adjusted(24, 24, -24, -24);
    QFont large = font();
    large.setPointSizeF(13);
    painter.setFont(large);
    QRectF text = painter.boundingRect(room, Qt::AlignCenter | Qt::TextWordWrap, m_message).adjusted(-14, -10, 14, 10);
    painter.setPen(QPen(colours::line, 1));
    painter.setBrush(colours::paper);
    painter.drawRoundedRect(text, buttonCorner, buttonCorner);
    painter.setPen(colours::ink);
    painter.drawText(room, Qt::AlignCenter | Qt::TextWordWrap, m_message);
}

/// The light under the glass, where the scanner is.
void ScanGlass::paintLamp(QPainter &painter, const QRectF &glass) const {
    double at = -1;
    if (!m_preview.isNull() && m_share < 1) {
        at = m_share;
    } else if (m_timer != 0) {
        at = 1 - std::abs(2.0 * m_step / lampPeriod - 1);
    }
    if (at < 0) {
        return;
    }
    const double y = glass.top() + at * (glass.height() - lamp);
    QLinearGradient light(0, y, 0, y + lamp);
    QColor glow = colours::sun;
    glow.setAlpha(0);
    light.setColorAt(0, glow);
    light.setColorAt(0.5, QColor(255, 250, 220));
    light.setColorAt(1, glow);
    painter.fillRect(QRectF(glass.left(), y, glass.width(), lamp), light);
}

} // namespace lumora
