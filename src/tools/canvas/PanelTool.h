// A tool that has the mouse on the photo as long as its panel is up: crop, cut-out, red-eye, colour focus, pop-art. Its
// panel's close button, Esc in the panel and Esc on the photo all leave it.
#pragma once

#include "tools/EditorTool.h"
#include "tools/canvas/CanvasTool.h"

namespace lumora {

class PanelTool : public EditorTool, public CanvasTool {
    Q_OBJECT

  public:
    SlidingPanel *panel() const override { return m_panel; }
    void close() override;

    /// Puts the panel away. Tools add what is theirs.
    void end() override;
    /// Esc leaves.
    bool wantsKey(const QKeyEvent &key) const override;
    void keyPress(const QKeyEvent &key) override;

  protected:
    /// All three outlive it.
    PanelTool(CanvasMouse &mouse, SlidingPanel *panel, QObject *parent);

    bool isAtWork() const;
    /// Makes it the mouse's tool, which ends the one before, and slides the panel in.
    void begin();
    /// The user is done: ends it and lets the Arrow tool follow. Nothing happens while it is not at work.
    void leave();

    CanvasMouse &m_mouse;

  private:
    SlidingPanel *m_panel;
};

} // namespace lumora
