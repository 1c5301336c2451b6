// The tools behind the tool column and the floating bars: owns them, starts one and ends the one before, and keeps the
// column showing which is current.
#pragma once

#include "effects/BasicEffects.h"
#include "effects/SpecialEffects.h"

#include <QObject>

namespace lumora {

class AdjustTool;
class Bubble;
class CanvasMouse;
class ColourFocusTool;
class CropTool;
class CutOutTool;
class EffectPreviews;
class EffectsPanel;
class FloatingBarSet;
class Frames;
class PhotoView;
class PopArtTool;
class RedEyeTool;
class ResizeTool;
class RotateTool;
class SelectionOutline;
class SelectionTool;
class SlidingPanel;
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
    /// The photo as a pop-art row: at once, or by its panel.
    void openPopArt();

    void HideFloatingToolbars();
    /// Closes an open slide-up panel and the tool that it belongs to.
    void HideBoxes();
    /// Makes the Arrow tool current: whatever tool is at work ends, and what is marked is marked no more.
    void ResetTools();
    /// Esc: closes what is open, one thing at a time.
    void escape();

    /// The part of the window that the photo has, in the window's pixels: panels slide over its lower edge.
    void setArea(const QRect &area);
    /// The panel that is up, or null.
    SlidingPanel *openPanel() const;

  Q_SIGNALS:
    /// Something to say in the status line, and whether it is good news.
    void message(const QString &text, bool good);
    /// The status line's own text, where a tool words it.
    void statusText(const QString &text);
    /// To be answered in a message box before the signal returns.
    void noticeWanted(const QString &text);
    /// What depends on the photo and the settings is to be refreshed.
    void buttonsToRefresh();
    /// A panel stands at its place or has gone.
    void panelChanged();
    /// The whole photo is to be in view.
    void fitWanted();

  private:
    void connectSelection();
    void connectEffects();
    void connectPreviews();
    template <typename Tool> void connectTool(Tool &tool);
    void connectPanel(SlidingPanel &panel);
    void openTool(const QString &control);
    void endTools(const SlidingPanel *butFor = nullptr);
    void enableTools(bool enabled);
    void toggleBar(const QString &control);
    void tellOutcome(EffectOutcome outcome);
    void showTip();
    void showCurrent();

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
    Frames *m_frames;
    CropTool *m_crop;
    CutOutTool *m_cutOut;
    RotateTool *m_rotate;
    ResizeTool *m_resize;
    AdjustTool *m_adjust;
    RedEyeTool *m_redEye;
    ColourFocusTool *m_focus;
    PopArtTool *m_popArt;
    EffectPreviews *m_previews;
    Bubble *picTip;
    QList<SlidingPanel *> m_panels;
    QString m_current = QStringLiteral("cmdTool1"); ///< of the column
    bool m_ending = false;                          ///< tools are being ended and tell so
};

} // namespace lumora
