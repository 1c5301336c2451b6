// The twelve special effects: the table of them, and what runs one at once or with the values of its settings box.
// Called by the effects panel and by what makes the small pictures.
#pragma once

#include "effects/SelectionFlow.h"

#include <QImage>
#include <array>
#include <span>

namespace lumora {

/// What an effect is run with, in the order of its settings box; unused ones are 0.
using EffectValues = std::array<int, 4>;

/// When an effect of the whole photo hides the outline of the selection.
enum class OutlineHidden { Before, After, OnlyInvisibleAfter };

/// How one member of a whole-photo effect deals with what lies beside the photo.
struct WholePhotoSteps {
    OutlineHidden outline = OutlineHidden::After;
    bool dummyPicture = false; ///< the reduced copies are made anew
};

/// One special effect. Adding one is adding a row in SpecialEffects.cpp.
struct SpecialEffect {
    using Operation = bool (*)(EffectEngine &engine, const EffectValues &values, bool limitToRegion);

    int number;       ///< 1 to 12
    const char *text; ///< identifier of its caption
    EffectValues basic;
    EffectValues advanced; ///< of the settings box when it opens
    Operation apply;
    Operation applyAdvanced = nullptr; ///< where the settings box applies another operation; not through a lasso
    bool valuesAreLengths = false;     ///< pixels of the photo: a reduced photo takes smaller ones
    bool looksAtNeighbours = false;    ///< what it does to single pixels shows at full size only
    bool wholePhoto = false;           ///< always changes the whole photo and only hides the selection
    WholePhotoSteps basicSteps = {};
    WholePhotoSteps advancedSteps = {};
};

/// All, from 1 to 12.
std::span<const SpecialEffect> specialEffects();
/// The row of a number, or null for a number that no effect has.
const SpecialEffect *specialEffect(int number);
/// Runs the effect on a photo at 1/factor (1, 2, 4, 8 or 16) of its size, with values for the photo at full size.
/// `applyAdvanced`: the operation of its settings box.
bool runEffect(const SpecialEffect &effect, bool applyAdvanced, const EffectValues &values, EffectEngine &engine,
               bool limitToRegion, int factor = 1);
/// The values for a photo at 1/factor of its size.
EffectValues valuesAtScale(const SpecialEffect &effect, const EffectValues &values, int factor);
/// False where the values end the effect before it begins: no tile across or down.
bool canRun(const SpecialEffect &effect, const EffectValues &values);

class SpecialEffects : public QObject {
    Q_OBJECT

  public:
    explicit SpecialEffects(AppContext &ctx, QObject *parent = nullptr);

    const SelectionFlow &flow() const { return m_flow; }

    /// Runs effect n, 1 to 12, with its fixed values; other numbers do nothing.
    EffectOutcome ApplyBasicSFX(int n);
    /// Runs effect n with the values of its settings box.
    EffectOutcome ApplyAdvancedSFX(int n);

    /// The values of the settings box of effect n, 1 to 12.
    const EffectValues &advancedValues(int n) const { return m_advanced.at(static_cast<size_t>(n - 1)); }
    void setAdvancedValue(int n, int index, int value);
    void restoreAdvancedValues();

  Q_SIGNALS:
    /// cmdTool2 can be used again.
    void selectionToolWanted();

  private:
    EffectOutcome run(const SpecialEffect &effect, bool advanced);
    EffectOutcome runOnWholePhoto(const SpecialEffect &effect, bool advanced, const EffectOperation &operation);

    AppContext &m_ctx;
    SelectionFlow m_flow;
    std::array<EffectValues, 12> m_advanced;
};

} // namespace lumora
