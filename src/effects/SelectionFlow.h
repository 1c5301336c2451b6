// Applies an engine operation to the selection or to the whole photo. Effects and colour adjustments call this and do
// not deal with regions, undo points or copies of the photo.
#pragma once

#include "imaging/EffectEngine.h"

#include <QObject>

namespace lumora {

struct AppContext;

enum class EffectOutcome {
    Done,     ///< the photo has changed, as one undo step
    Nothing,  ///< there was nothing to do: no photo, an unknown effect, a value that cancels it
    NoRegion, ///< a selection tool is current but marks nothing of the photo; nothing changed
    Refused,  ///< the engine failed; the photo keeps its pixels
    NoMemory, ///< memory was refused; photo, selection and flags are unchanged
    Stopped,  ///< the user cancelled it; photo, selection and flags are unchanged
};

/// What failed for a reason of the computer: the user is told that memory is short.
constexpr bool isFailure(EffectOutcome outcome) {
    return outcome == EffectOutcome::Refused || outcome == EffectOutcome::NoMemory;
}

class SelectionFlow : public QObject {
    Q_OBJECT

  public:
    explicit SelectionFlow(AppContext &ctx, QObject *parent = nullptr) : QObject(parent), m_ctx(ctx) {}

    /// Changes what the rectangle, the ellipse or the lasso marks, and the whole photo while no selection tool is
    /// current; then drops the selection. `throughLasso` is the operation for a lasso where it differs. When the tool
    /// marks nothing of the photo the tip is requested, and photo and selection stay.
    EffectOutcome apply(const Operation &operation) { return apply(operation, operation); }
    EffectOutcome apply(const Operation &operation, const Operation &throughLasso);
    /// The lasso case: pastes the changed photo through the outline. Does not change SelectionActive.
    EffectOutcome applyThroughLasso(const Operation &operation);
    /// Changes the whole photo regardless of the selection.
    EffectOutcome applyToWholePhoto(const Operation &operation);

    /// Drawn value 0, the rectangle 0, 0, 0, 0, not visible.
    void hideSelection();

  Q_SIGNALS:
    /// The tip that a selection has to be made first: picTip.
    void tipWanted();

  private:
    /// The selected box as the engine expects it: picture pixels, right and bottom exclusive.
    struct SelectionBounds {
        int SelLeft = 0, SelTop = 0, SelRight = 0, SelBottom = 0;
    };

    EffectOutcome applyToMarked(const Operation &operation, const Operation &throughLasso);
    bool readBounds(SelectionBounds &bounds) const;
    bool marksPixels() const;
    EffectOutcome change(const std::function<QImage()> &compute);
    EffectOutcome take(const QImage &next);

    AppContext &m_ctx;
    EffectEngine m_engine;
};

} // namespace lumora
