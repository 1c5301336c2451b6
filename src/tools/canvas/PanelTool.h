// A tool that uses the mouse on the photo while its panel is open: crop, cut-out, red-eye, colour focus, pop-art. Its
// panel's close button, Esc in the panel and Esc on the photo all leave it.
#pragma once

#include "tools/EditorTool.h"
#include "tools/canvas/CanvasTool.h"

namespace lumora {

class PanelTool : public EditorTool, public CanvasTool {
    Q_OBJECT

  public:
    bool hasMouse() const override { return isAtWork(); }
    SlidingPanel *panel() const override { return m_panel; }
    void close() override;

    /// Closes the panel. Subclasses extend it.
    void end() override;
    /// Esc leaves.
    bool wantsKey(const QKeyEvent &key) const override;
    void keyPress(const QKeyEvent &key) override;

  protected:
    /// All three must outlive it.
    PanelTool(CanvasMouse &mouse, SlidingPanel *panel, QObject *parent);

    bool isAtWork() const;
    /// Makes it the current mouse tool, which ends the previous one, and slides the panel in.
    void begin();
    /// The user is done: ends it and activates the Arrow tool. Does nothing while it is not active.
    void leave();

    CanvasMouse &m_mouse;

  private:
    SlidingPanel *m_panel;
};

} // namespace lumora
