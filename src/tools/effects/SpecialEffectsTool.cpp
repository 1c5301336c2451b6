#include "tools/effects/SpecialEffectsTool.h"

#include "effects/EffectsPanel.h"
#include "tools/select/SelectionTool.h"
#include "widgets/FloatingToolbar.h"

namespace lumora {

SpecialEffectsTool::SpecialEffectsTool(AppContext &ctx, PhotoView &view, FloatingToolbar *FT4, QWidget *window)
    : EffectTool(ctx, window), m_effects(ctx), m_panel(new EffectsPanel(ctx, m_effects, view, window)),
      m_previews(ctx, window->findChild<FloatingToolbar *>("FT3"), FT4) {
    connect(m_panel, &EffectsPanel::applied, this, &SpecialEffectsTool::tell);
    connect(m_panel, &EffectsPanel::message, this, [this](const QString &text) { Q_EMIT message(text, false); });
    connect(m_panel, &SlidingPanel::left, this, &SpecialEffectsTool::finished);
    connect(&m_effects.flow(), &SelectionFlow::tipWanted, this, &SpecialEffectsTool::tipWanted);
    connect(&m_previews, &EffectPreviews::done, this, &SpecialEffectsTool::smallPicturesWanted);
}

bool SpecialEffectsTool::open(const QString &key) {
    m_panel->pick(key);
    return m_panel->isOpen();
}

void SpecialEffectsTool::close() {
    m_panel->slideOut();
}

SlidingPanel *SpecialEffectsTool::panel() const {
    return m_panel;
}

bool SpecialEffectsTool::staysFor(const EditorTool &next) const {
    return &next == this || qobject_cast<const SelectionTool *>(&next) != nullptr;
}

} // namespace lumora
