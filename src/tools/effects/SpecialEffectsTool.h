// The items of FT4: the special effects, each at once or by its settings in panelSFX. Keeps the previews of the effects
// in FT3 and FT4 up to date.
#pragma once

#include "effects/EffectPreviews.h"
#include "effects/SpecialEffects.h"
#include "tools/effects/EffectTool.h"

namespace lumora {

class EffectsPanel;

class SpecialEffectsTool : public EffectTool {
    Q_OBJECT

  public:
    SpecialEffectsTool(AppContext &ctx, PhotoView &view, FloatingToolbar *FT4, QWidget *window);

    bool open(const QString &key) override;
    void close() override;
    void makeReady() override { m_previews.begin(); }
    SlidingPanel *panel() const override;
    /// A part of the photo can be selected while the panel is open, and another effect picked.
    bool staysFor(const EditorTool &next) const override;

  private:
    SpecialEffects m_effects;
    EffectsPanel *m_panel;
    EffectPreviews m_previews;
};

} // namespace lumora
