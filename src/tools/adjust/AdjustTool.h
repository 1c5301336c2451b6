// Brightness, contrast, saturation, and one press that makes a photo better: the items of FT6. In basic mode an item
// changes the photo at once, in advanced mode it opens the adjust panel.
#pragma once

#include "effects/LivePreview.h"
#include "effects/SelectionFlow.h"
#include "tools/EditorTool.h"

#include <QImage>

namespace lumora {

class AdjustPanel;

class AdjustTool : public EditorTool {
    Q_OBJECT

  public:
    static constexpr int basicAmount = 50; ///< of the basic mode; see imaging/effects for its meaning for each kind

    /// The panel becomes a child of the window. All arguments must outlive the tool.
    AdjustTool(AppContext &ctx, PhotoView &view, CanvasMouse &mouse, FloatingToolbar *FT6, QWidget *window);

    SlidingPanel *panel() const override;
    const LivePreview &livePreview() const { return m_live; }

    /// The items of FT6: "keyBrightness", "keyContrast", "keySaturation" and "keyEnhance". Other keys do nothing.
    bool open(const QString &key) override;
    /// Closes the panel and shows the unchanged photo.
    void close() override;
    /// A part of the photo can be selected while the panel is open, and another item picked.
    bool staysFor(const EditorTool &next) const override;

    /// Adjusts the selection, or the whole photo, by basicAmount or by the value of its slider. Kinds are
    /// 1 brightness, 2 contrast, 3 saturation, 4 better; others do nothing.
    EffectOutcome ApplyBasicBCS(int kind);
    EffectOutcome ApplyBCS(int kind);

    /// Makes the previews of FT6's items. The panel makes its own two while it is open.
    void CreateBCSSFX();
    void makeSmallPictures() override { CreateBCSSFX(); }

    int AdjustKind = 0; ///< 1 to 4; 0 while no panel has been opened
    bool AdjustPanelShown() const;

  private:
    EffectOutcome apply(int kind, int amount);
    void applyPanel();
    void showValue();
    void showPictures(const QImage &after);
    void compare(bool before);

    AppContext &m_ctx;
    PhotoView &m_view;
    CanvasMouse &m_mouse;
    FloatingToolbar *m_FT6;
    SelectionFlow m_flow;
    LivePreview m_live;
    AdjustPanel *m_panel;
    QImage m_small; ///< the unchanged photo, for the panel
};

} // namespace lumora
