#include "tools/resize/ResizeByHand.h"

#include "imaging/Scale.h"
#include "session/AppContext.h"
#include "tools/canvas/PointerLabel.h"
#include "tools/resize/ResizePanel.h"
#include "widgets/Theme.h"

#include <QKeyEvent>
#include <QPainter>
#include <algorithm>
#include <cmath>

namespace lumora {

namespace {

constexpr int frameReach = 5; // picture pixels outside the frame that still count as inside

constexpr qreal handleCorner = 5; // pixels

/// The edge that a handle drags, between the shortest and the longest side from the other edge.
int draggedEdge(double wanted, int fixed, int where, int longest) {
    const double length = std::clamp(std::round((wanted - fixed) * where), 1.0, double(longest));
    return fixed + where * static_cast<int>(length);
}

} // namespace

ResizeByHand::ResizeByHand(AppContext &ctx, PhotoView &view, QObject *parent)
    : QObject(parent), m_ctx(ctx), m_view(view) {
    connect(&ctx.photo, &PhotoDocument::changed, this, [this](PhotoChanges what) {
        if (m_active && what.testAnyFlags(PhotoChange::Pixels | PhotoChange::Size | PhotoChange::Loaded)) {
            drop(); // the drag was on another photo
            // Undo and redo leave the frame where it is.
            if (what.testFlag(PhotoChange::Loaded) || m_stored.isEmpty()) {
                m_stored = m_ctx.photo.picCanvas().rect();
            }
        }
    });
    connect(&view, &PhotoView::visiblePartChanged, this, [this] {
        if (m_active) {
            m_view.viewport()->update(); // the handles overlap what the view scrolls
        }
    });
}

void ResizeByHand::start() {
    m_active = true;
    m_stored = m_ctx.photo.picCanvas().rect();
    m_view.setFocus(); // for Esc
}

void ResizeByHand::end() {
    drop();
    m_active = false;
}

/// Ends a drag; the photo is shown unchanged.
void ResizeByHand::drop() {
    m_grabbed = {};
    m_hovered = {};
    m_view.setPhotoHidden(false);
    m_view.viewport()->update();
}

QRectF ResizeByHand::frame() const {
    const QRect frame = isDragging() ? m_frame : m_stored;
    return {m_view.toView(frame.topLeft()), m_view.toView(frame.topLeft() + QPoint(frame.width(), frame.height()))};
}

// --- The hand -------------------------------------------------------------------------------------------------------

void ResizeByHand::press(const PointerEvent &at) {
    m_pointer = at.view;
    const ResizeHandle handle = handles().at(at.view);
    showCursor(handle);
    if (handle.isNull() || m_ctx.photo.picCanvas().isNull()) {
        return;
    }
    m_frame = m_stored;
    m_grabOffset =
        QPointF(handle.across > 0 ? m_frame.width() : 0, handle.down > 0 ? m_frame.height() : 0) - at.picture;
    m_grabbed = handle;
    m_view.viewport()->update();
}

void ResizeByHand::move(const PointerEvent &at) {
    m_pointer = at.view;
    if (!isDragging()) {
        showCursor(handles().at(at.view));
        return;
    }
    showCursor(m_grabbed);
    m_frame = dragged(at.picture + m_grabOffset);
    m_view.setPhotoHidden(m_frame != m_stored);
    m_view.viewport()->update();
}

/// The frame with the grabbed edge moved to that point of the picture.
QRect ResizeByHand::dragged(QPointF picture) const {
    const QSize photo = m_stored.size();
    int left = 0;
    int top = 0;
    int right = photo.width();
    int bottom = photo.height();
    const int widest = std::max(ResizePanel::longestSide, photo.width());
    const int highest = std::max(ResizePanel::longestSide, photo.height());
    if (m_grabbed.across != 0) {
        int &edge = m_grabbed.across < 0 ? left : right;
        edge = draggedEdge(picture.x(), m_grabbed.across < 0 ? right : left, m_grabbed.across, widest);
    }
    if (m_grabbed.down != 0) {
        int &edge = m_grabbed.down < 0 ? top : bottom;
        edge = draggedEdge(picture.y(), m_grabbed.down < 0 ? bottom : top, m_grabbed.down, highest);
    }
    return {left, top, right - left, bottom - top};
}

void ResizeByHand::release(const PointerEvent &at) {
    if (!isDragging()) {
        return;
    }
    const QImage photo = m_ctx.photo.picCanvas();
    const QSize size = m_frame.size();
    bool done = true;
    QImage next;
    if (size != m_stored.size() &&
        m_ctx.tasks.run([&] { next = scaled(photo, size.width(), size.height()); }, Stopping::Offered)) {
        done = m_ctx.photo.changePhoto(next);
        m_stored = done ? QRect(QPoint(), size) : m_stored;
    }
    drop();
    showCursor(handles().at(at.view));
    if (!done) {
        Q_EMIT failed();
    }
}

void ResizeByHand::clicked(QPoint) {
    m_ctx.photo.setPhotoModified(true);
}

bool ResizeByHand::endsAt(QPoint picture) const {
    const QRect frame = m_stored;
    const QPoint first = frame.topLeft() - QPoint(frameReach, frameReach);
    const QPoint last = first + QPoint(frame.width() + 2 * frameReach, frame.height() + 2 * frameReach);
    return !QRect(first, last).contains(picture);
}

void ResizeByHand::showCursor(const ResizeHandle &handle) {
    if (m_hovered != handle) {
        m_hovered = handle;
        m_view.viewport()->update();
    }
    m_view.setToolCursor(ResizeHandles::cursor(handle));
}

std::optional<QPointF> ResizeByHand::keyboardStart() const {
    return handles().place({1, 1}).center();
}

bool ResizeByHand::wantsKey(const QKeyEvent &key) const {
    const bool ends = key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter;
    return (key.modifiers() & ~Qt::KeypadModifier) == 0 && (key.key() == Qt::Key_Escape || (ends && !isDragging()));
}

void ResizeByHand::keyPress(const QKeyEvent &) {
    if (isDragging()) {
        drop();
    } else {
        Q_EMIT endWanted();
    }
}

// --- What is seen ---------------------------------------------------------------------------------------------------

void ResizeByHand::paint(QPainter &painter) {
    if (m_ctx.photo.picCanvas().isNull()) {
        return;
    }
    const QRectF place = frame();
    painter.save();
    if (isDragging() && m_frame != m_stored) {
        paintPhoto(painter);
    }
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    for (const auto &[colour, width] : {std::pair(QColor(Qt::white), 4.0), std::pair(colours::ink, 2.0)}) {
        painter.setPen(QPen(colour, width));
        painter.drawRect(place);
    }
    for (const ResizeHandle handle : resizeHandles) {
        const bool held = handle == (isDragging() ? m_grabbed : m_hovered);
        const QRectF square = ResizeHandles(place).place(handle).adjusted(1.5, 1.5, -1.5, -1.5);
        painter.setPen(QPen(Qt::white, 5));
        painter.setBrush(Qt::NoBrush);
        painter.drawRoundedRect(square, handleCorner, handleCorner);
        painter.setPen(QPen(colours::ink, 2.5));
        painter.setBrush(held ? colours::sun : QColor(Qt::white));
        painter.drawRoundedRect(square, handleCorner, handleCorner);
    }
    painter.restore();
    if (isDragging()) {
        paintPointerLabel(painter, m_view.viewport()->rect(), m_pointer,
                          m_ctx.texts.text("PointerSize").arg(m_frame.width()).arg(m_frame.height()));
    }
}

/// At the frame's size, from the mip level with a similar number of pixels.
void ResizeByHand::paintPhoto(QPainter &painter) {
    const QImage &photo = m_ctx.photo.picCanvas();
    const QRectF place = frame();
    const qreal devicePixels = m_view.devicePixelRatioF();
    const double scale = std::max(place.width() / photo.width(), place.height() / photo.height()) * devicePixels;
    const QImage level = m_levels.forScale(photo, scale).picture;
    const QRectF viewport = m_view.viewport()->rect();
    const QPointF origin = m_view.photoRect().topLeft();
    m_table.paintTable(painter, viewport, place, origin, devicePixels);
    if (level.hasAlphaChannel()) {
        m_table.paintChecks(painter, place.intersected(viewport), origin, devicePixels);
    }
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(place, level);
}

} // namespace lumora
