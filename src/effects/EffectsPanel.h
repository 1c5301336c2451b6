// panelSFX: the settings of the special effects, one box for each, with the effect shown live on the photo.
#pragma once

#include "effects/EffectBoxes.h"
#include "effects/LivePreview.h"
#include "effects/SpecialEffects.h"
#include "widgets/SlidingPanel.h"

#include <map>

namespace lumora {

class EffectsPanel : public SlidingPanel {
    Q_OBJECT

  public:
    EffectsPanel(AppContext &ctx, SpecialEffects &effects, PhotoView &view, QWidget *window);

    /// An item of FT4 was picked: "keySFX1", "keySFX2" ...; other keys do nothing. Applies the effect at once, or opens
    /// its box when advanced settings are on.
    void pick(const QString &key);
    /// The number of the effect picked last; 0 before the first.
    int SelectedSFX() const { return m_picked; }
    const LivePreview &livePreview() const { return m_live; }

  Q_SIGNALS:
    /// An effect was run, at once or by the Apply button.
    void applied(lumora::EffectOutcome outcome);
    /// A problem, for the status line.
    void message(const QString &text);

  private:
    void showBox(const Effect &effect);
    void showPhoto();
    void apply();
    void close();
    void showLive();

    AppContext &m_ctx;
    SpecialEffects &m_effects;
    LivePreview m_live;
    std::map<int, EffectBox *> m_boxes; ///< by the effect's number
    int m_picked = 0;
};

} // namespace lumora
