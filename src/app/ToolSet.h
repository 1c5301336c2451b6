// The tools behind the tool column and the floating bars: owns them, starts one and ends the one before, and keeps the
// column showing which is current.
#pragma once

#include "effects/BasicEffects.h"
#include "effects/EffectsPanel.h"
#include "effects/SpecialEffects.h"

#include <QObject>

namespace lumora {

class Bubble;
class CanvasMouse;
class EffectPreviews;
class FloatingBarSet;
class Frames;
class PhotoView;
class SelectionOutline;
class SelectionTool;
class ToolColumn;

class ToolSet : public QObject {
    Q_OBJECT

  public:
    /// Makes panels and tips as children of the window; the other widgets outlive it.
    ToolSet(AppContext &ctx, PhotoView &view, ToolColumn &column, FloatingBarSet &bars, QWidget *window);
    ~ToolSet() override;

    /// A button of the tool column was pressed.
    void press(const QString &control);
    /// An item of a floating bar was picked.
    void pick(const QString &bar, const QString &key);

    void HideFloatingToolbars();
    /// Closes an open slide-up panel.
    void HideBoxes();
    /// Makes the Arrow tool current; what is marked is marked no more.
    void ResetTools();
    /// Esc: closes what is open, one thing at a time.
    void escape();

    /// The part of the window that the photo has, in the window's pixels: panels slide over its lower edge.
    void setArea(const QRect &area);
    /// The panel that is up, or null.
    SlidingPanel *openPanel() const;

  Q_SIGNALS:
    /// Something to say in the status line.
    void message(const QString &text);
    /// What depends on the photo and the settings is to be refreshed.
    void buttonsToRefresh();
    /// A panel stands at its place or has gone.
    void panelChanged();

  private:
    void connectSelection();
    void connectEffects();
    void connectPanel(SlidingPanel &panel);
    void tellOutcome(EffectOutcome outcome);
    void showTip();
    void showCurrent();
    void toggleBar(const QString &control);

    AppContext &m_ctx;
    PhotoView &m_view;
    ToolColumn &m_column;
    FloatingBarSet &m_bars;
    BasicEffects m_basicEffects;
    SpecialEffects m_specialEffects;
    SelectionOutline *m_outline;
    CanvasMouse *m_mouse;
    SelectionTool *m_selection;
    EffectsPanel *m_panelSFX;
    EffectPreviews *m_previews;
    Frames *m_frames;
    Bubble *picTip;
};

} // namespace lumora
