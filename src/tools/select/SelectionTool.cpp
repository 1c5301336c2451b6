#include "tools/select/SelectionTool.h"

#include "session/AppContext.h"
#include "tools/canvas/CanvasMouse.h"
#include "tools/select/SelectionOutline.h"

#include <QKeyEvent>
#include <algorithm>
#include <cmath>

namespace lumora {

namespace {

using Shape = PhotoSelection::Shape;

struct ShapeRow {
    const char *key;
    Shape kind;
    const char *icon;
    const char *simpleIcon; ///< in Simple mode the lasso has the rectangle's
    int target;             ///< image of picTarget until the mouse moves
};
const ShapeRow shapes[] = {
    {"keySqr", Shape::Rectangle, "tool2-rectangle", "tool2-rectangle", 3},
    {"keyCircle", Shape::Ellipse, "tool2-ellipse", "tool2-ellipse", 3},
    {"keyLasso", Shape::Lasso, "tool2-lasso", "tool2-rectangle", 4},
};

/// The drag with sides of one length, the longer one as far as the photo reaches.
QPoint squared(QPoint from, QPoint by, const QSize &photo) {
    const int wide = by.x() < 0 ? from.x() : photo.width() - from.x();
    const int high = by.y() < 0 ? from.y() : photo.height() - from.y();
    const int side = std::min({std::max(std::abs(by.x()), std::abs(by.y())), wide, high});
    return {by.x() < 0 ? -side : side, by.y() < 0 ? -side : side};
}

constexpr int clickSlop = 3; // pixels of the view that an unsteady hand may move within a click

} // namespace

SelectionTool::SelectionTool(AppContext &ctx, CanvasMouse &mouse, SelectionOutline &outline, QObject *parent)
    : EditorTool(parent), m_ctx(ctx), m_document(ctx.photo), m_mouse(mouse), m_outline(outline) {
    connect(&m_document, &PhotoDocument::changed, this, [this](PhotoChanges what) {
        if (what.testAnyFlags(PhotoChange::Pixels | PhotoChange::Size | PhotoChange::Loaded)) {
            cancel(); // the drag was on another picture
        }
    });
}

bool SelectionTool::open(const QString &key) {
    const PhotoSelection again = key == keyAgain ? m_document.usedSelection() : PhotoSelection();
    const auto *const shape = again.isEmpty() ? std::ranges::find(shapes, key, &ShapeRow::key)
                                              : std::ranges::find(shapes, again.shape(), &ShapeRow::kind);
    if (shape == std::end(shapes)) {
        return false;
    }
    Q_EMIT iconChanged(m_ctx.flags.SimpleModeOn ? shape->simpleIcon : shape->icon);
    m_mouse.setTool(this);
    m_mouse.clearMarked();
    m_mouse.showTarget(shape->target);
    m_ctx.flags.startSelection(shape->kind);
    if (!again.isEmpty()) {
        markAgain(again);
    }
    Q_EMIT message(m_ctx.texts.text("StatusSelection"), true);
    return true;
}

/// Marks the same shape as if it had just been drawn.
void SelectionTool::markAgain(const PhotoSelection &before) {
    PhotoSelection selection = m_document.selection();
    switch (before.shape()) {
    case Shape::None:
        break;
    case Shape::Rectangle:
        selection.markRectangle(before.box());
        break;
    case Shape::Ellipse:
        selection.markEllipse(before.box());
        break;
    case Shape::Lasso:
        selection.markLasso(before.lassoPoints());
        break;
    }
    mark(selection);
}

bool SelectionTool::hasMouse() const {
    return m_mouse.tool() == this;
}

void SelectionTool::press(const PointerEvent &at) {
    if (m_document.picCanvas().isNull()) {
        return;
    }
    m_ctx.flags.startSelection(m_ctx.flags.SelectionKind()); // an effect may have dropped the selection
    m_mouse.clearMarked();
    m_pressed = true;
    m_pressedAt = at.view;
    if (m_ctx.flags.SelectionKind() == Shape::Lasso) {
        addLassoPoint(at.picture);
    }
}

void SelectionTool::move(const PointerEvent &at) {
    if (!m_pressed) {
        return;
    }
    m_dragged = m_dragged || (at.view - m_pressedAt).manhattanLength() >= clickSlop;
    if (m_ctx.flags.SelectionKind() == Shape::Lasso) {
        addLassoPoint(at.picture);
    } else if (m_dragged) {
        markBox(at);
    }
}

void SelectionTool::release(const PointerEvent &) {
    if (m_pressed && m_dragged && m_ctx.flags.SelectionKind() == Shape::Lasso) {
        PhotoSelection selection = m_document.selection();
        selection.markLasso(m_lasso);
        mark(selection);
    }
    cancel();
}

void SelectionTool::markBox(const PointerEvent &at) {
    const QPoint from = inPhoto(m_mouse.SelStartPic());
    const bool ellipse = m_ctx.flags.SelectionKind() == Shape::Ellipse;
    QPoint by = inPhoto(ellipse ? m_mouse.SelEndPic() : CanvasMouse::rounded(at.picture)) - from;
    if (ellipse) { // wherever it is dragged to, it starts at the mouse-down and goes right and down
        by = {std::abs(by.x()), std::abs(by.y())};
    }
    if (at.modifiers.testFlag(Qt::ShiftModifier)) {
        by = squared(from, by, m_document.picCanvas().size());
    }
    const QPoint first(std::min(from.x(), from.x() + by.x()), std::min(from.y(), from.y() + by.y()));
    const QRect box(first, QSize(std::abs(by.x()), std::abs(by.y())));
    PhotoSelection selection = m_document.selection();
    ellipse ? selection.markEllipse(box) : selection.markRectangle(box);
    mark(selection);
}

/// Updates the document and the view.
void SelectionTool::mark(const PhotoSelection &selection) {
    m_outline.clearTrail();
    m_document.setSelection(selection);
}

void SelectionTool::addLassoPoint(QPointF picture) {
    const QSize photo = m_document.picCanvas().size();
    const PicturePoint point{std::clamp<double>(picture.x(), 0, photo.width()),
                             std::clamp<double>(picture.y(), 0, photo.height())};
    if (m_lasso.empty() || m_lasso.back().x != point.x || m_lasso.back().y != point.y) {
        m_lasso.push_back(point);
        m_outline.addToTrail(point);
    }
}

QPoint SelectionTool::inPhoto(QPoint picture) const {
    const QSize photo = m_document.picCanvas().size();
    return {std::clamp(picture.x(), 0, photo.width()), std::clamp(picture.y(), 0, photo.height())};
}

/// Ends a drag; the selection so far is kept.
void SelectionTool::cancel() {
    m_pressed = false;
    m_dragged = false;
    m_lasso.clear();
    m_outline.clearTrail();
}

bool SelectionTool::wantsKey(const QKeyEvent &key) const {
    return key.key() == Qt::Key_Escape && key.modifiers() == Qt::NoModifier &&
           (m_pressed || !m_document.selection().isEmpty());
}

void SelectionTool::keyPress(const QKeyEvent &) {
    cancel();
    m_mouse.clearMarked();
}

} // namespace lumora
