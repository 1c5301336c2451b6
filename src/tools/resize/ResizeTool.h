// Resizing the photo: the size panel, or the photo's frame dragged on the canvas.
#pragma once

#include "tools/EditorTool.h"
#include "tools/resize/ResizeByHand.h"

namespace lumora {

class ResizePanel;

class ResizeTool : public EditorTool, public CanvasTool {
    Q_OBJECT

  public:
    /// The panel becomes a child of `window`. All arguments must outlive it.
    ResizeTool(AppContext &ctx, PhotoView &view, CanvasMouse &mouse, QWidget *window);

    /// Slides the panel in, or starts free resizing, depending on txtResizeMode.
    bool open(const QString &key = {}) override;
    /// cmdFreeResize: from now on, until the program ends, the tool resizes freely.
    void openFreeResize();
    void close() override;
    bool hasMouse() const override { return FreeResizeActive(); }
    bool excludesOthers() const override { return m_byHand.isActive(); }
    void accept() override { leave(); }

    /// From open() to close(): the panel is open, or the photo is resized freely.
    bool FreeResizeActive() const;
    SlidingPanel *panel() const override;
    const ResizeByHand &byHand() const { return m_byHand; }

    // The mouse while the panel is open.
    void end() override;
    void clicked(QPoint pixel) override;

  private:
    void leave();
    void resizeTo(QSize size);
    void sayNoMemory();

    AppContext &m_ctx;
    CanvasMouse &m_mouse;
    QWidget *m_window;
    ResizePanel *m_panel;
    ResizeByHand m_byHand;
};

} // namespace lumora
