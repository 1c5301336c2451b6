// The items of FT3: the basic effects, each at once.
#pragma once

#include "effects/BasicEffects.h"
#include "tools/effects/EffectTool.h"

namespace lumora {

class BasicEffectsTool : public EffectTool {
    Q_OBJECT

  public:
    BasicEffectsTool(AppContext &ctx, QObject *parent);

    bool open(const QString &key) override;

  private:
    BasicEffects m_effects;
};

} // namespace lumora
