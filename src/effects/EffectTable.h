// The table of effects: one row holds all data of an effect. The floating bars, the previews, the effects panel, the
// live preview and the code that applies an effect use it.
#pragma once

#include "imaging/Operation.h"

#include <QString>
#include <span>
#include <vector>

class QWidget;

namespace lumora {

class EffectBox;
struct Effect;

/// What an effect is run with, in the order of its sliders.
using EffectValues = std::vector<int>;

/// Each has its own floating bar.
enum class EffectGroup { Basic, Special, Adjustment };

/// When an effect of the whole photo hides the outline of the selection.
enum class OutlineHidden { Before, After, OnlyInvisibleAfter };

/// What else follows from an effect of the whole photo.
struct WholePhotoSteps {
    OutlineHidden outline = OutlineHidden::After;
    bool dummyPicture = false; ///< the reduced copies are made again
};

/// One slider of a settings box, for one value.
struct EffectSlider {
    const char *name;  ///< object name
    const char *label; ///< object name of its caption
    int least;
    int most;
    bool showsRest = false; ///< shows the distance from `most`, and grows in the opposite direction
};

/// One effect. Adding one is adding a row in EffectTable.cpp.
struct Effect {
    /// The operation for a photo at 1/factor (1, 2, 4, 8 or 16) of its size.
    using Make = Operation (*)(const EffectValues &values, int factor);

    EffectGroup group;
    int number;       ///< within its group, from 1
    const char *name; ///< "key" and it are the key of its item in the floating bar; identifier of a panel's caption
    const char *icon; ///< of the item while no photo is loaded
    Make operation;
    EffectValues basic = {}; ///< without advanced settings

    EffectValues advanced = {}; ///< of the settings box when it opens
    std::vector<EffectSlider> sliders = {};
    const char *sentence = nullptr; ///< object name of the label in a box without settings
    EffectBox *(*makeBox)(const Effect &effect, QWidget *parent) = nullptr; ///< a custom box without the sliders
    const char *panelCaption = nullptr;                                     ///< English, where it differs on the panel
    Make advancedOperation = nullptr; ///< where the settings box applies another operation; not through a lasso

    bool valuesAreLengths = false;  ///< pixels of the photo: a reduced photo takes smaller ones
    bool looksAtNeighbours = false; ///< its effect on single pixels is visible only at full size
    bool noZeros = false;           ///< a value of 0 cancels it before it starts
    bool wholePhoto = false;        ///< always changes the whole photo and only hides the selection
    WholePhotoSteps basicSteps = {};
    WholePhotoSteps advancedSteps = {};

    QString key() const { return QStringLiteral("key") + QLatin1StringView(name); }
};

/// A group's effects, from number 1.
std::span<const Effect> effects(EffectGroup group);
/// The row of that number or of that item of the floating bar; null where there is none.
const Effect *findEffect(EffectGroup group, int number);
const Effect *findEffect(EffectGroup group, const QString &key);

/// What the effect runs on a photo at 1/factor of its size, with values for the photo at full size. `advanced`: the
/// operation of its settings box.
Operation operationOf(const Effect &effect, bool advanced, const EffectValues &values, int factor = 1);
/// The values for a photo at 1/factor of its size.
EffectValues valuesAtScale(const Effect &effect, const EffectValues &values, int factor);
/// False when the values cancel the effect before it starts: no tile across or down.
bool canRun(const Effect &effect, const EffectValues &values);

} // namespace lumora
