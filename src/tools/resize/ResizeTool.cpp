#include "tools/resize/ResizeTool.h"

#include "imaging/Scale.h"
#include "session/AppContext.h"
#include "tools/canvas/CanvasMouse.h"
#include "tools/resize/ResizePanel.h"

#include <utility>

namespace lumora {

ResizeTool::ResizeTool(AppContext &ctx, PhotoView &view, CanvasMouse &mouse, QWidget *window)
    : QObject(window), m_ctx(ctx), m_mouse(mouse), m_window(window), m_panel(new ResizePanel(ctx, window)),
      m_byHand(ctx, view) {
    connect(m_panel, &ResizePanel::sizeWanted, this, &ResizeTool::resizeTo);
    connect(m_panel, &ResizePanel::sizeRefused, this,
            [this] { Q_EMIT noticeWanted(m_ctx.texts.text("MsgInvalidSize")); });
    connect(m_panel, &ResizePanel::freeResizeWanted, this, &ResizeTool::openFreeResize);
    const auto toArrow = [this] {
        if (m_open) {
            close();
            Q_EMIT arrowWanted();
        }
    };
    connect(m_panel, &SlidingPanel::closed, this, toArrow);
    connect(&m_byHand, &ResizeByHand::endWanted, this, toArrow);
    connect(&m_byHand, &ResizeByHand::started, this, [this] { Q_EMIT toolsEnabled(false); });
    connect(&m_byHand, &ResizeByHand::ended, this, [this] {
        m_open = false; // whoever became the current tool
        Q_EMIT toolsEnabled(true);
    });
    connect(&m_byHand, &ResizeByHand::failed, this, &ResizeTool::sayNoMemory);
}

SlidingPanel *ResizeTool::panel() const {
    return m_panel;
}

void ResizeTool::open() {
    if (!m_ctx.photo.PhotoLoaded() || m_ctx.photo.picCanvas().isNull()) {
        return;
    }
    if (m_ctx.fields.txtResizeMode == "1") {
        openFreeResize();
        return;
    }
    begin();
    m_panel->open();
    m_ctx.flags.ToolPanelShown = true;
}

void ResizeTool::openFreeResize() {
    if (!m_ctx.photo.PhotoLoaded() || m_ctx.photo.picCanvas().isNull()) {
        return;
    }
    begin();
    m_ctx.fields.txtResizeMode = "1";
    m_mouse.setTool(&m_byHand);
    Q_EMIT message(m_ctx.texts.text("StatusFreeResize", "Drag the handles to make the photo larger or smaller."), true);
}

void ResizeTool::begin() {
    close();
    m_mouse.setTool(nullptr);
    m_mouse.clearMarked();
    m_mouse.EditMode = 0;
    m_mouse.MoveMode = false;
    ToolFlags &flags = m_ctx.flags;
    flags.CropToolActive = false;
    flags.RDMode = false;
    flags.ColorPickerMode = false;
    flags.SelectionActive = false;
    flags.FreeResizeActive = true;
    m_open = true;
    Q_EMIT hideFloatingToolbars();
    Q_EMIT current();
}

void ResizeTool::close() {
    if (!std::exchange(m_open, false)) {
        return;
    }
    if (m_byHand.isActive()) {
        m_mouse.setTool(nullptr);
    }
    m_panel->slideOut();
    m_ctx.flags.ToolPanelShown = false;
    m_ctx.flags.FreeResizeActive = false;
}

// --- The panel's sizes ----------------------------------------------------------------------------------------------

void ResizeTool::resizeTo(QSize size) {
    if (size.isEmpty()) {
        Q_EMIT message(
            m_ctx.texts.text("StatusSizeZero", "A photo needs at least 1 pixel each way. It stays as it is."), false);
        return;
    }
    const QImage photo = m_ctx.photo.picCanvas();
    QImage next;
    m_ctx.tasks.run([&] { next = scaled(photo, size.width(), size.height()); });
    if (m_ctx.photo.changePhoto(next)) {
        Q_EMIT statusText(statusAfterResize());
    } else {
        sayNoMemory();
    }
}

void ResizeTool::sayNoMemory() {
    Q_EMIT message(m_ctx.texts.text("StatusNoMemory"), false);
}

/// The status line with a second opening bracket before the millimetres: after the panel's resize it has always read
/// so.
QString ResizeTool::statusAfterResize() const {
    const QString pixels = QStringLiteral(" pixels - ");
    QString line = m_ctx.photo.statusLine(m_ctx.texts.text("Statusbar"), versionNumber(), m_window->logicalDpiX());
    const qsizetype at = line.lastIndexOf(pixels);
    return at < 0 ? line : line.insert(at + pixels.size(), QStringLiteral(" ("));
}

} // namespace lumora
