// The table of effects: one row holds all data of an effect. The floating bars, the previews, the effects panel, the
// live preview and the code that applies an effect use it.
#pragma once

#include "imaging/Operation.h"

#include <QSize>
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
    /// The operation on a picture whose unit of length is so many pixels: see effectUnit.
    using Make = Operation (*)(const EffectValues &values, double unit);

    EffectGroup group;
    int number;       ///< within its group, from 1
    const char *name; ///< "key" and it are the key of its item in the floating bar; identifier of a panel's caption
    const char *icon; ///< of the item while no photo is loaded
    Make operation;
    EffectValues basic = {}; ///< without advanced settings

    EffectValues advanced = {}; ///< of the settings box or the slider when it opens
    std::vector<EffectSlider> sliders = {};
    const char *sentence = nullptr; ///< object name of the label in a box without settings
    EffectBox *(*makeBox)(const Effect &effect, QWidget *parent) = nullptr; ///< a custom box without the sliders
    const char *panelCaption = nullptr;                                     ///< English, where it differs on the panel
    Make advancedOperation = nullptr; ///< where the settings box applies another operation; not through a lasso

    /// The longer side, in pixels, of the copy of the photo that its icon is made from: with fewer of them the icon
    /// shows more of it. Such that the icon changes as much as a photo that is seen as a whole.
    int iconCopy = 190;
    /// How large pixels may be, in units, of the reduced picture that its live preview is computed on; 0: of any size.
    double coarsestLive = 0;
    bool showsIcon = false;                            ///< also in a corner of its item's picture
    bool noZeros = false;                              ///< a value of 0 cancels it before it starts
    bool wholePhoto = false;                           ///< always changes the whole photo and only hides the selection
    OutlineHidden basicOutline = OutlineHidden::After; ///< of an effect of the whole photo
    OutlineHidden advancedOutline = OutlineHidden::After;

    QString key() const { return QStringLiteral("key") + QLatin1StringView(name); }
};

/// A group's effects, from number 1.
std::span<const Effect> effects(EffectGroup group);
/// The row of that number or of that item of the floating bar; null where there is none.
const Effect *findEffect(EffectGroup group, int number);
const Effect *findEffect(EffectGroup group, const QString &key);

/// The unit of length of effects on a picture of that size, in pixels: 1 up to a longer side of 500 pixels, and
/// growing with it. So an effect changes a photo of any size, seen as a whole on the screen, as much as its icon shows.
/// For a part or a reduced copy of a photo the unit is that of the whole photo, divided by the reduction.
double effectUnit(const QSize &photo);

/// What the effect runs on a picture with such a unit. `advanced`: the operation of its settings box.
Operation operationOf(const Effect &effect, bool advanced, const EffectValues &values, double unit);
/// False when the values cancel the effect before it starts: no tile across or down.
bool canRun(const Effect &effect, const EffectValues &values);

} // namespace lumora
