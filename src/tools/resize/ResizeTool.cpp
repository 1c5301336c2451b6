#include "tools/resize/ResizeTool.h"

#include "imaging/Scale.h"
#include "session/AppContext.h"
#include "session/PhotoStatus.h"
#include "tools/canvas/CanvasMouse.h"
#include "tools/resize/ResizePanel.h"

namespace lumora {

ResizeTool::ResizeTool(AppContext &ctx, PhotoView &view, CanvasMouse &mouse, QWidget *window)
    : EditorTool(window), m_ctx(ctx), m_mouse(mouse), m_window(window), m_panel(new ResizePanel(ctx, window)),
      m_byHand(ctx, view) {
    connect(m_panel, &ResizePanel::sizeWanted, this, &ResizeTool::resizeTo);
    connect(m_panel, &ResizePanel::sizeRefused, this,
            [this] { Q_EMIT noticeWanted(m_ctx.texts.text("MsgInvalidSize")); });
    connect(m_panel, &ResizePanel::freeResizeWanted, this, &ResizeTool::openFreeResize);
    connect(m_panel, &SlidingPanel::left, this, &ResizeTool::leave);
    connect(&m_byHand, &ResizeByHand::endWanted, this, &ResizeTool::leave);
    connect(&m_byHand, &ResizeByHand::failed, this, &ResizeTool::sayNoMemory);
}

SlidingPanel *ResizeTool::panel() const {
    return m_panel;
}

bool ResizeTool::FreeResizeActive() const {
    return m_mouse.tool() == this || m_mouse.tool() == &m_byHand;
}

bool ResizeTool::open(const QString &) {
    if (!m_ctx.photo.PhotoLoaded() || m_ctx.photo.picCanvas().isNull()) {
        return false;
    }
    close();
    m_mouse.clearMarked();
    m_ctx.flags.endSelection();
    if (m_ctx.fields.txtResizeMode) {
        openFreeResize();
    } else {
        m_mouse.setTool(this);
        m_panel->open();
    }
    return true;
}

void ResizeTool::openFreeResize() {
    m_ctx.fields.txtResizeMode = true;
    m_mouse.setTool(&m_byHand); // which closes the panel
    Q_EMIT message(m_ctx.texts.text("StatusFreeResize"), true);
}

void ResizeTool::close() {
    if (FreeResizeActive()) {
        m_mouse.setTool(nullptr);
    }
}

void ResizeTool::end() {
    m_panel->slideOut();
}

void ResizeTool::leave() {
    close();
    Q_EMIT finished();
}

void ResizeTool::clicked(QPoint) {
    m_ctx.photo.setPhotoModified(true);
}

// --- The panel's sizes ----------------------------------------------------------------------------------------------

void ResizeTool::resizeTo(QSize size) {
    if (size.isEmpty()) {
        Q_EMIT message(m_ctx.texts.text("StatusSizeZero"), false);
        return;
    }
    const QImage photo = m_ctx.photo.picCanvas();
    QImage next;
    if (!m_ctx.tasks.run([&] { next = scaled(photo, size.width(), size.height()); }, Stopping::Offered)) {
        return;
    }
    if (m_ctx.photo.changePhoto(next)) {
        Q_EMIT statusText(photoStatus(m_ctx, m_window->logicalDpiX(), PhotoStatusKind::Resized));
    } else {
        sayNoMemory();
    }
}

void ResizeTool::sayNoMemory() {
    Q_EMIT message(m_ctx.texts.text("StatusNoMemory"), false);
}

} // namespace lumora
