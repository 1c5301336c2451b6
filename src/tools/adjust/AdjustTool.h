// Brightness, contrast and saturation: what the items of FT6 do. In basic mode an item changes the photo at once, in
// advanced mode it opens the adjust panel.
#pragma once

#include "effects/LivePreview.h"
#include "effects/SelectionFlow.h"

#include <QImage>
#include <QObject>
#include <QPixmap>

namespace lumora {

class AdjustPanel;
class CanvasMouse;
class SlidingPanel;

class AdjustTool : public QObject {
    Q_OBJECT

  public:
    static constexpr int basicAmount = 50; ///< of the basic mode; see imaging/effects for what it means to each kind

    /// The panel becomes a child of the window. All four outlive the tool.
    AdjustTool(AppContext &ctx, PhotoView &view, CanvasMouse &mouse, QWidget *window);

    SlidingPanel *panel() const;
    const LivePreview &livePreview() const { return m_live; }

    /// An item of FT6 was picked: "keyBrightness", "keyContrast" or "keySaturation". Other keys do nothing, nor does
    /// any while there is no photo.
    void open(const QString &key);
    /// Puts the panel away and shows the photo as it is.
    void close();

    /// One adjustment of what is marked, or of the whole photo, by basicAmount or by the value of its slider. Kinds are
    /// 1 brightness, 2 contrast, 3 saturation; others do nothing.
    EffectOutcome ApplyBasicBCS(int kind);
    EffectOutcome ApplyBCS(int kind);
    EffectOutcome ApplyBasicBrightness() { return ApplyBasicBCS(1); }
    EffectOutcome ApplyBasicContrast() { return ApplyBasicBCS(2); }
    EffectOutcome ApplyBasicSaturation() { return ApplyBasicBCS(3); }
    EffectOutcome ApplyBrightness() { return ApplyBCS(1); }
    EffectOutcome ApplyContrast() { return ApplyBCS(2); }
    EffectOutcome ApplySaturation() { return ApplyBCS(3); }

    /// Makes the small pictures of FT6's items. The panel makes its own two while it is open.
    void CreateBCSSFX();

    int AdjustKind = 0;            ///< 1 to 3; 0 while no panel has been opened
    bool AdjustPanelShown = false; ///< from the panel's way up until it is closed

  Q_SIGNALS:
    void hideFloatingToolbars();
    /// The Arrow tool is to become the current one.
    void arrowWanted();
    /// The tip that a selection has to be made first.
    void tipWanted();
    void message(const QString &text, bool good);
    /// What the item of that key of FT6 does, shown on the photo.
    void pictureMade(const QString &key, const QPixmap &picture);

  private:
    EffectOutcome apply(int kind, int amount);
    void applyPanel();
    void showValue();
    void compare(bool before);
    void panelClosed();

    AppContext &m_ctx;
    PhotoView &m_view;
    CanvasMouse &m_mouse;
    SelectionFlow m_flow;
    LivePreview m_live;
    AdjustPanel *m_panel;
    QImage m_small; ///< the photo as it is, for the panel
};

} // namespace lumora
