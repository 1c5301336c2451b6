#include "view/PhotoView.h"

#include "base/Finger.h"
#include "view/PictureSampling.h"

#include <QMouseEvent>
#include <QNativeGestureEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollBar>
#include <QTouchEvent>
#include <QWheelEvent>
#include <QWindow>
#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace lumora {

namespace {

constexpr int scrollStep = 40; // a notch of the wheel is three of these
constexpr int wheelNotch = 120;

bool isTab(const QKeyEvent &key) {
    return key.key() == Qt::Key_Tab || key.key() == Qt::Key_Backtab;
}

int toInt(double value) {
    constexpr double farthest = std::numeric_limits<int>::max() / 4.0;
    return static_cast<int>(std::clamp(value, -farthest, farthest));
}

void setRange(QScrollBar &bar, int content, int view) {
    bar.setRange(0, std::max(0, content - view));
    bar.setPageStep(view);
    bar.setSingleStep(scrollStep);
}

} // namespace

PhotoView::PhotoView(PhotoDocument &document, QWidget *parent) : QAbstractScrollArea(parent), m_document(document) {
    setObjectName(QStringLiteral("picCanvas"));
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::StrongFocus);
    // Pictures have their left side on the left in every language.
    setLayoutDirection(Qt::LeftToRight);
    viewport()->setMouseTracking(true);
    viewport()->setAttribute(Qt::WA_OpaquePaintEvent);
    viewport()->ungrabGesture(Qt::PanGesture); // two fingers have another use, and it loses the release of one
    connect(&document, &PhotoDocument::changed, this, &PhotoView::followDocument);
    layOut(centre());
}

QPointF PhotoView::toPicture(QPointF viewPoint) const {
    return (viewPoint * devicePixelRatioF() - QPointF(m_origin)) / m_scale;
}

QPointF PhotoView::toView(QPointF picturePoint) const {
    return (picturePoint * m_scale + QPointF(m_origin)) / devicePixelRatioF();
}

QPoint PhotoView::pixelAt(QPointF viewPoint) const {
    const QPointF at = toPicture(viewPoint);
    return {toInt(std::floor(at.x())), toInt(std::floor(at.y()))};
}

QRectF PhotoView::photoRect() const {
    const qreal devicePixels = devicePixelRatioF();
    return {QPointF(m_origin) / devicePixels, QSizeF(m_size) / devicePixels};
}

void PhotoView::zoomAbout(QPointF viewPoint, int percent) {
    m_anchor = Anchor{toPicture(viewPoint), viewPoint};
    m_document.setZoom(percent);
}

void PhotoView::followDocument(PhotoChanges what) {
    const bool other = what.testAnyFlags(PhotoChange::Size | PhotoChange::Loaded);
    const Anchor anchor = other ? photoCentre() : m_anchor.value_or(centre());
    m_anchor.reset();
    if (what.testAnyFlags(PhotoChange::Pixels | PhotoChange::Size | PhotoChange::Loaded)) {
        m_preview = QImage(); // it was made from another picture
    }
    if (other || what.testFlag(PhotoChange::Zoom)) {
        layOut(anchor);
    }
    if (what.testAnyFlags(PhotoChange::Pixels | PhotoChange::Size | PhotoChange::Zoom | PhotoChange::Loaded)) {
        viewport()->update();
    }
}

PhotoView::Anchor PhotoView::centre() const {
    const QPointF middle = QRectF(viewport()->rect()).center();
    return {toPicture(middle), middle};
}

PhotoView::Anchor PhotoView::photoCentre() const {
    return {QRectF(m_document.picCanvas().rect()).center(), QRectF(viewport()->rect()).center()};
}

/// Takes over the document's zoom and size and scrolls so that the anchor stays where it is, as far as it can.
void PhotoView::layOut(const Anchor &anchor) {
    const qreal devicePixels = devicePixelRatioF();
    const QSize picture = m_document.picCanvas().size();
    m_scale = m_document.zoom() / 100.0 * devicePixels;
    m_size = picture.isEmpty() ? QSize()
                               : QSize(std::max(1, toInt(std::round(picture.width() * m_scale))),
                                       std::max(1, toInt(std::round(picture.height() * m_scale))));
    const QSize content = (QSizeF(m_size) / devicePixels).toSize();
    // A photo that has room without scroll bars needs none, although those of now may take a part of it.
    const QSize room = maximumViewportSize();
    const bool isWhole = content.width() <= room.width() && content.height() <= room.height();
    const QSize view = isWhole ? room : viewport()->size();
    setRange(*horizontalScrollBar(), content.width(), view.width());
    setRange(*verticalScrollBar(), content.height(), view.height());
    const QPointF scroll = anchor.picture * m_scale / devicePixels - anchor.view;
    horizontalScrollBar()->setValue(toInt(std::round(scroll.x())));
    verticalScrollBar()->setValue(toInt(std::round(scroll.y())));
    placeOrigin();
    Q_EMIT visiblePartChanged();
}

QRect PhotoView::visiblePart() const {
    const QRectF inPicture(toPicture({0, 0}), toPicture(QPointF(viewport()->width(), viewport()->height())));
    return inPicture.toAlignedRect().intersected(m_document.picCanvas().rect());
}

MipLevels::Level PhotoView::visibleLevel(double coarsest) {
    return m_levels.forScale(m_document.picCanvas(), m_scale, coarsest);
}

void PhotoView::showPreview(const QImage &picture, const QRect &part) {
    if (picture.isNull() && m_preview.isNull()) {
        return;
    }
    m_preview = part.isEmpty() ? QImage() : picture;
    m_previewPart = part;
    viewport()->update();
}

void PhotoView::clearPreview() {
    showPreview({}, {});
}

void PhotoView::showInstead(const QImage &picture) {
    if (picture.cacheKey() != m_instead.cacheKey()) {
        m_instead = picture;
        viewport()->update();
    }
}

void PhotoView::setPhotoHidden(bool hidden) {
    if (m_photoHidden != hidden) {
        m_photoHidden = hidden;
        viewport()->update();
    }
}

void PhotoView::setToolCursor(const QCursor &cursor) {
    if (m_toolCursor != cursor) { // tools set it with every move of the mouse
        m_toolCursor = cursor;
        showHand();
    }
}

/// Centred where there is room, else where the scroll bars say.
void PhotoView::placeOrigin() {
    const qreal devicePixels = devicePixelRatioF();
    const auto along = [devicePixels](const QScrollBar *bar, int view, int photo) {
        return bar->maximum() > 0 ? -qRound(bar->value() * devicePixels)
                                  : std::max(0, (qRound(view * devicePixels) - photo) / 2);
    };
    m_origin = QPoint(along(horizontalScrollBar(), viewport()->width(), m_size.width()),
                      along(verticalScrollBar(), viewport()->height(), m_size.height()));
}

void PhotoView::resizeEvent(QResizeEvent *event) {
    const QPointF middle = QRectF(QPointF(), QSizeF(event->oldSize())).center();
    layOut({toPicture(middle), centre().view});
    viewport()->update();
}

void PhotoView::scrollContentsBy(int, int) {
    const QPoint before = m_origin;
    placeOrigin();
    const QPoint moved = m_origin - before;
    const qreal devicePixels = devicePixelRatioF();
    if (qFuzzyCompare(devicePixels, std::round(devicePixels))) {
        viewport()->scroll(qRound(moved.x() / devicePixels), qRound(moved.y() / devicePixels));
    } else {
        viewport()->update(); // pixels cannot be moved by a part of one
    }
    Q_EMIT visiblePartChanged();
}

bool PhotoView::event(QEvent *event) {
    if (event->type() == QEvent::KeyPress && isTab(*static_cast<QKeyEvent *>(event))) {
        event->ignore(); // what no tool uses moves the focus
        Q_EMIT key(*static_cast<QKeyEvent *>(event));
        if (event->isAccepted()) {
            return true;
        }
        event->accept(); // what is not accepted goes on to the window, which would move the focus once more
        return QAbstractScrollArea::event(event);
    }
    if (event->type() != QEvent::ShortcutOverride) {
        return QAbstractScrollArea::event(event);
    }
    event->ignore(); // what no tool uses is left to the shortcuts
    Q_EMIT key(*static_cast<QKeyEvent *>(event));
    return event->isAccepted();
}

bool PhotoView::viewportEvent(QEvent *event) {
    switch (event->type()) {
    case QEvent::NativeGesture:
        return nativeGesture(*static_cast<QNativeGestureEvent *>(event));
    case QEvent::ScreenChangeInternal: // the new screen may have more pixels to the point
        layOut(photoCentre());
        return QAbstractScrollArea::viewportEvent(event);
    default:
        return QAbstractScrollArea::viewportEvent(event);
    }
}

void PhotoView::paintEvent(QPaintEvent *event) {
    QPainter painter(viewport());
    const QRectF photo = m_size.isEmpty() || m_photoHidden ? QRectF() : photoRect();
    for (const QRect &exposed : event->region()) {
        m_table.paintTable(painter, exposed, photo, QPointF(m_origin) / devicePixelRatioF(), devicePixelRatioF());
        if (!m_instead.isNull()) {
            paintInstead(painter, exposed);
        } else if (!m_photoHidden) {
            paintPhoto(painter, exposed);
            paintPreview(painter, exposed);
        }
    }
    if (m_instead.isNull()) {
        Q_EMIT paintOverlay(painter);
    }
}

void PhotoView::paintInstead(QPainter &painter, const QRect &exposed) const {
    painter.save();
    painter.setClipRect(exposed);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(photoRect(), m_instead);
    painter.restore();
}

/// The exposed part of the photo in device pixels from its top left corner.
QRect PhotoView::inDevice(const QRect &exposed) const {
    const qreal devicePixels = devicePixelRatioF();
    const QRectF part(QPointF(exposed.topLeft()) * devicePixels - QPointF(m_origin),
                      QSizeF(exposed.size()) * devicePixels);
    return part.toAlignedRect().intersected(QRect(QPoint(), m_size));
}

Sampling PhotoView::sampling() const {
    const bool squares = m_document.zoom() > 100 && m_document.drawingMode() == DrawingMode::Squares;
    return squares ? Sampling::Nearest : Sampling::Bilinear;
}

void PhotoView::paintPhoto(QPainter &painter, const QRect &exposed) {
    const QRect part = inDevice(exposed);
    if (!part.isEmpty()) {
        const MipLevels::Level level = m_levels.forScale(m_document.picCanvas(), m_scale);
        paintPixels(painter, sampled(level.picture, m_scale * level.factor, part, sampling()), part);
    }
}

/// Pixel for pixel what paintPhoto would paint were the preview a part of the photo or of one of its reduced copies.
void PhotoView::paintPreview(QPainter &painter, const QRect &exposed) {
    if (m_preview.isNull()) {
        return;
    }
    const auto edge = [this](int pixel) { return toInt(std::round(pixel * m_scale)); };
    const QPoint first(edge(m_previewPart.left()), edge(m_previewPart.top()));
    const QPoint end(edge(m_previewPart.left() + m_previewPart.width()),
                     edge(m_previewPart.top() + m_previewPart.height()));
    const QRect part = inDevice(exposed).intersected(QRect(first, end - QPoint(1, 1)));
    if (part.isEmpty()) {
        return;
    }
    const double factorX = double(m_previewPart.width()) / m_preview.width(); // photo pixels to one of the preview
    const double factorY = double(m_previewPart.height()) / m_preview.height();
    const QPointF origin(m_previewPart.left() / factorX, m_previewPart.top() / factorY);
    paintPixels(painter, sampled(m_preview, {m_scale * factorX, m_scale * factorY}, origin, part, sampling()), part);
}

/// `part` counts device pixels from the photo's top left corner.
void PhotoView::paintPixels(QPainter &painter, QImage pixels, const QRect &part) {
    if (pixels.isNull()) {
        return;
    }
    const qreal devicePixels = devicePixelRatioF();
    pixels.setDevicePixelRatio(devicePixels);
    const QPointF at = QPointF(m_origin + part.topLeft()) / devicePixels;
    if (pixels.hasAlphaChannel()) {
        m_table.paintChecks(painter, QRectF(at, QSizeF(part.size()) / devicePixels), QPointF(m_origin) / devicePixels,
                            devicePixels);
    }
    painter.drawImage(at, pixels);
}

void PhotoView::wheelEvent(QWheelEvent *event) {
    if (event->modifiers() & Qt::ControlModifier) {
        zoomByWheel(*event);
    } else if (event->modifiers() & Qt::ShiftModifier) {
        QWheelEvent sideways(event->position(), event->globalPosition(), event->pixelDelta().transposed(),
                             event->angleDelta().transposed(), event->buttons(), Qt::NoModifier, event->phase(),
                             event->inverted(), event->source());
        QAbstractScrollArea::wheelEvent(&sideways);
    } else {
        QAbstractScrollArea::wheelEvent(event);
    }
    event->accept();
}

void PhotoView::zoomByWheel(const QWheelEvent &event) {
    m_wheelRest += event.angleDelta().y();
    const QPointF at = event.position();
    for (; std::abs(m_wheelRest) >= wheelNotch; m_wheelRest -= m_wheelRest > 0 ? wheelNotch : -wheelNotch) {
        m_anchor = Anchor{toPicture(at), at};
        if (m_wheelRest > 0) {
            m_document.PerformZoomIn();
        } else {
            m_document.PerformZoomOut();
        }
    }
}

bool PhotoView::nativeGesture(const QNativeGestureEvent &event) {
    if (event.gestureType() == Qt::BeginNativeGesture) {
        m_gestureZoom = m_document.zoom();
        return true;
    }
    if (event.gestureType() != Qt::ZoomNativeGesture) {
        return false;
    }
    m_gestureZoom = std::max(1.0, m_gestureZoom * (1.0 + event.value()));
    zoomAbout(event.position(), toInt(std::round(m_gestureZoom)));
    return true;
}

/// The window's touches are watched, not taken: the toolkit makes a mouse of the first finger, whose release would be
/// lost if only some of them were taken.
void PhotoView::showEvent(QShowEvent *event) {
    window()->windowHandle()->installEventFilter(this);
    QAbstractScrollArea::showEvent(event);
}

bool PhotoView::eventFilter(QObject *watched, QEvent *event) {
    if (event->isPointerEvent() && watched == window()->windowHandle()) {
        switch (event->type()) {
        case QEvent::TouchBegin:
        case QEvent::TouchUpdate:
        case QEvent::TouchEnd:
        case QEvent::TouchCancel:
            followFingers(*static_cast<QTouchEvent *>(event));
            break;
        default:
            break;
        }
    }
    return QAbstractScrollArea::eventFilter(watched, event);
}

void PhotoView::followFingers(const QTouchEvent &event) {
    if (event.type() == QEvent::TouchBegin) {
        m_fingersUsed = false;
    }
    QList<QPointF> fingers; // in the view
    for (const QEventPoint &point : event.points()) {
        const QPoint pressed = point.scenePressPosition().toPoint();
        if (point.state() != QEventPoint::Released && window()->childAt(pressed) == viewport()) {
            fingers.append(viewport()->mapFrom(window(), point.scenePosition()));
        }
    }
    if (fingers.size() != 2 || event.type() == QEvent::TouchCancel) {
        m_pinch.reset();
        return;
    }
    const QPointF between = (fingers[0] + fingers[1]) / 2;
    constexpr double closest = 20; // pixels: fingers have a width
    const double distance = std::max(closest, QLineF(fingers[0], fingers[1]).length());
    if (!m_pinch) {
        if (m_heldPress == nullptr && !m_fingersUsed) {
            return; // the first finger drags something
        }
        m_heldPress.reset();
        m_fingersUsed = true;
        m_pinch = Pinch{toPicture(between), distance, double(m_document.zoom())};
    }
    m_anchor = Anchor{m_pinch->picture, between};
    m_document.setZoom(toInt(std::round(m_pinch->zoom * distance / m_pinch->distance)));
}

/// Whether that event of a finger is not told, or not yet.
bool PhotoView::holdsBack(const QMouseEvent &event) {
    if (!isFromFinger(event)) {
        return false;
    }
    if (event.type() == QEvent::MouseButtonPress || event.type() == QEvent::MouseButtonDblClick) {
        m_heldPress.reset(event.clone());
        return true;
    }
    if (m_heldPress != nullptr && (event.type() == QEvent::MouseButtonRelease ||
                                   (event.position() - m_heldPress->position()).manhattanLength() >= fingerSlip)) {
        tellHeldPress();
    }
    return m_heldPress != nullptr || m_fingersUsed;
}

void PhotoView::tellHeldPress() {
    const std::unique_ptr<QMouseEvent> press = std::move(m_heldPress);
    const bool isDouble = press->type() == QEvent::MouseButtonDblClick;
    tellPointer(isDouble ? PointerEvent::Kind::DoubleClick : PointerEvent::Kind::Press, *press);
}

void PhotoView::tellPointer(PointerEvent::Kind kind, const QMouseEvent &event) {
    const QPointF at = event.position();
    Q_EMIT pointer({kind, toPicture(at), at, event.button(), event.buttons(), event.modifiers()});
}

bool PhotoView::startPanning(const QMouseEvent &event) {
    const bool pans = event.button() == Qt::MiddleButton || (event.button() == Qt::LeftButton && m_spaceDown);
    if (pans && !m_panFrom) {
        m_panFrom = event.position().toPoint();
        m_panButton = event.button();
        showHand();
    }
    return pans;
}

void PhotoView::mousePressEvent(QMouseEvent *event) {
    if (!startPanning(*event) && !holdsBack(*event)) {
        tellPointer(PointerEvent::Kind::Press, *event);
    }
}

void PhotoView::mouseDoubleClickEvent(QMouseEvent *event) {
    if (!startPanning(*event) && !holdsBack(*event)) {
        tellPointer(PointerEvent::Kind::DoubleClick, *event);
    }
}

void PhotoView::mouseMoveEvent(QMouseEvent *event) {
    if (!m_panFrom) {
        if (!holdsBack(*event)) {
            tellPointer(PointerEvent::Kind::Move, *event);
        }
        return;
    }
    const QPoint at = event->position().toPoint();
    const QPoint moved = at - *m_panFrom;
    m_panFrom = at;
    horizontalScrollBar()->setValue(horizontalScrollBar()->value() - moved.x());
    verticalScrollBar()->setValue(verticalScrollBar()->value() - moved.y());
}

void PhotoView::mouseReleaseEvent(QMouseEvent *event) {
    if (!m_panFrom || event->button() != m_panButton) {
        if (!holdsBack(*event)) {
            tellPointer(PointerEvent::Kind::Release, *event);
        }
        return;
    }
    m_panFrom.reset();
    showHand();
}

void PhotoView::keyPressEvent(QKeyEvent *event) {
    event->ignore();
    Q_EMIT key(*event);
    if (event->isAccepted()) {
        return;
    }
    event->accept();
    if (event->key() != Qt::Key_Space) {
        QAbstractScrollArea::keyPressEvent(event);
        return;
    }
    if (!event->isAutoRepeat()) {
        m_spaceDown = true;
        showHand();
    }
}

void PhotoView::keyReleaseEvent(QKeyEvent *event) {
    if (event->key() != Qt::Key_Space) {
        QAbstractScrollArea::keyReleaseEvent(event);
        return;
    }
    if (!event->isAutoRepeat()) {
        m_spaceDown = false;
        showHand();
    }
}

void PhotoView::focusOutEvent(QFocusEvent *event) {
    m_spaceDown = false;
    showHand();
    QAbstractScrollArea::focusOutEvent(event);
}

/// A closed hand while the photo is dragged, an open one while it could be; else the cursor that a tool set on the
/// view.
void PhotoView::showHand() {
    if (m_panFrom) {
        viewport()->setCursor(Qt::ClosedHandCursor);
    } else if (m_spaceDown) {
        viewport()->setCursor(Qt::OpenHandCursor);
    } else {
        viewport()->setCursor(m_toolCursor);
    }
}

} // namespace lumora
