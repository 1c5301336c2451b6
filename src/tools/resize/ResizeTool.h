// Resizing the photo: the size panel, or the photo's frame dragged on the canvas. The main window calls it when
// cmdTool4 is pressed.
#pragma once

#include "tools/resize/ResizeByHand.h"

#include <QObject>

namespace lumora {

class CanvasMouse;
class ResizePanel;
class SlidingPanel;

class ResizeTool : public QObject {
    Q_OBJECT

  public:
    /// The panel becomes a child of `window`. All outlive it.
    ResizeTool(AppContext &ctx, PhotoView &view, CanvasMouse &mouse, QWidget *window);

    /// cmdTool4: slides the panel in, or starts free resizing, as txtResizeMode says. Nothing without a photo.
    void open();
    /// cmdFreeResize: from now on, until the program ends, the tool resizes freely.
    void openFreeResize();
    /// Ends the tool: panel, handles, flags. A drag that is under way is dropped.
    void close();

    bool isOpen() const { return m_open; }
    SlidingPanel *panel() const;
    const ResizeByHand &byHand() const { return m_byHand; }

  Q_SIGNALS:
    void hideFloatingToolbars();
    /// cmdTool4 is to show as the current tool.
    void current();
    /// Free resizing has started (false) or ended (true): cmdTool2, cmdTool3, cmdTool5 to cmdTool11 and cmdCropCut.
    void toolsEnabled(bool enabled);
    /// The Arrow tool is to be current: the panel was closed, or Esc ended free resizing.
    void arrowWanted();
    /// The status line's text after a resize by the panel, after the photo has said that it changed.
    void statusText(const QString &text);
    /// A message box with an exclamation mark; to be answered before the signal returns.
    void noticeWanted(const QString &text);
    /// For the status line.
    void message(const QString &text, bool good);

  private:
    void begin();
    void resizeTo(QSize size);
    void sayNoMemory();

    AppContext &m_ctx;
    CanvasMouse &m_mouse;
    QWidget *m_window;
    ResizePanel *m_panel;
    ResizeByHand m_byHand;
    bool m_open = false;
};

} // namespace lumora
