// pnlCrop: the panel that the crop and the cut-out tool share, and what opening and leaving either has in common. Made
// by CropTool; the main window listens to it for both.
#pragma once

#include "widgets/SlidingPanel.h"

namespace lumora {

struct AppContext;
class CanvasMouse;
class CanvasTool;
class CropTip;
class PictureButton;

class CropPanel : public SlidingPanel {
    Q_OBJECT

  public:
    enum class Use { None, Crop, CutOut };

    CropPanel(AppContext &ctx, CanvasMouse &mouse, QWidget *window);

    /// Ends what runs, makes `tool` the mouse's tool, clears the flags of all others, shows that tool's line and
    /// buttons and slides in.
    void open(Use use, CanvasTool &tool);
    /// Ends the tool that is open, from any state: flags, what is marked, pointer and panel. Nothing happens while none
    /// is open.
    void close();
    /// The same, and the Arrow tool becomes current: what cmdpnlCropExit does.
    void exit();
    Use use() const { return m_use; }

    PictureButton *cmdCropNow() const { return m_cropNow; }
    PictureButton *cmdCropCutNow() const { return m_cropCutNow; }
    PictureButton *cmdDelInverse() const { return m_delInverse; }
    CropTip *picTip2() const { return m_tip; }

  Q_SIGNALS:
    void hideFloatingToolbars();
    /// Another tool's panel is up and has to go: HideBoxes.
    void hideBoxesWanted();
    /// False: cmdTool2 to cmdTool11 and cmdCropCut are disabled and shown unpressed, all but the one that opened the
    /// panel, which is shown pressed. True: all can be used again.
    void toolsEnabled(bool enabled);
    void arrowWanted();
    /// The tip that a selection has to be made first.
    void tipWanted();
    /// For the status line.
    void message(const QString &text, bool good);

  protected:
    void moveEvent(QMoveEvent *event) override;

  private:
    AppContext &m_ctx;
    CanvasMouse &m_mouse;
    CropTip *m_tip;
    PictureButton *m_cropNow;
    PictureButton *m_cropCutNow;
    PictureButton *m_delInverse;
    QLabel *m_hint;
    Use m_use = Use::None;
};

} // namespace lumora
