// Runs a special effect at once or with the values of its settings box. Called by the effects panel.
#pragma once

#include "effects/EffectTable.h"
#include "effects/SelectionFlow.h"

#include <map>

namespace lumora {

class SpecialEffects : public QObject {
    Q_OBJECT

  public:
    explicit SpecialEffects(AppContext &ctx, QObject *parent = nullptr);

    const SelectionFlow &flow() const { return m_flow; }

    /// Runs effect n of the table with its fixed values; other numbers do nothing.
    EffectOutcome ApplyBasicSFX(int n);
    /// Runs effect n with the values of its settings box.
    EffectOutcome ApplyAdvancedSFX(int n);

    /// The values of the settings box of effect n, which is one of the table.
    const EffectValues &advancedValues(int n) const { return m_advanced.at(n); }
    void setAdvancedValue(int n, int index, int value);
    void restoreAdvancedValues();

  private:
    EffectOutcome run(int n, bool advanced);
    EffectOutcome runOnWholePhoto(const Effect &effect, bool advanced, const EffectValues &values);

    AppContext &m_ctx;
    SelectionFlow m_flow;
    std::map<int, EffectValues> m_advanced; ///< by the effect's number
};

} // namespace lumora
