#include "window/PhotoZoom.h"

#include "session/AppContext.h"
#include "view/PhotoView.h"
#include "widgets/PictureButton.h"

#include <QEvent>
#include <QMenu>
#include <QTimer>

namespace lumora {

namespace {
constexpr int zoomSteps[] = {25, 50, 75, 100, 150, 200, 300, 400}; // percent
} // namespace

PhotoZoom::PhotoZoom(AppContext &ctx, PhotoView &view, PictureButton &button)
    : QObject(&view), m_ctx(ctx), m_view(view), m_button(button) {
    view.installEventFilter(this);
}

void PhotoZoom::fitPhoto() {
    m_ctx.photo.fitPhoto(m_view.canvasSize());
    m_ctx.photo.showWhole(m_view.canvasSize());
    m_fittedZoom = m_ctx.photo.zoom();
    m_fittedSize = m_photoSize = m_ctx.photo.picCanvas().size();
}

/// Not after a resize, which keeps the zoom, until that is undone.
bool PhotoZoom::isFitted() const {
    return m_ctx.photo.zoom() == m_fittedZoom && m_photoSize == m_fittedSize;
}

void PhotoZoom::photoResized(bool keepZoom) {
    const bool wasFitted = isFitted();
    m_photoSize = m_ctx.photo.picCanvas().size();
    if ((wasFitted || isFitted()) && !keepZoom) {
        QTimer::singleShot(0, this, &PhotoZoom::fitPhoto); // a rotated photo stays completely in view
    }
}

void PhotoZoom::refresh() {
    m_button.setText(m_ctx.texts.text("ZoomPercent").arg(m_ctx.photo.zoom()));
}

void PhotoZoom::showMenu() {
    QMenu menu(m_button.window());
    menu.setObjectName("mnuZoom");
    menu.addAction(m_ctx.texts.text("ZoomFit"), this, &PhotoZoom::fitPhoto);
    menu.addSeparator();
    for (const int percent : zoomSteps) {
        menu.addAction(m_ctx.texts.text("ZoomPercent").arg(percent), this,
                       [this, percent] { m_ctx.photo.setZoom(percent); });
    }
    menu.exec(m_button.mapToGlobal(QPoint(0, m_button.height())));
}

bool PhotoZoom::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::Resize && isFitted()) {
        // After the view has taken its new size, and unless the photo or its zoom has changed until then.
        QTimer::singleShot(0, this, [this] {
            if (isFitted()) {
                fitPhoto();
            }
        });
    }
    return QObject::eventFilter(watched, event);
}

} // namespace lumora
