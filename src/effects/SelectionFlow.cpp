#include "effects/SelectionFlow.h"

#include "imaging/transforms/Canvas.h"
#include "session/AppContext.h"
#include "session/DoEvents.h"

#include <QtNumeric>

namespace lumora {

namespace {

constexpr int fullStrength = 100; // per cent of a paste

} // namespace

Marked SelectionFlow::marked(const AppContext &ctx) {
    if (!ctx.flags.SelectionActive) {
        return Marked::WholePhoto;
    }
    switch (ctx.flags.SelectionKind) {
    case 1:
        return Marked::Rectangle;
    case 2:
        return Marked::Ellipse;
    case 3:
        return Marked::Lasso;
    default:
        return Marked::Unknown;
    }
}

void SelectionFlow::endSelection(AppContext &ctx) {
    ctx.flags.SelectionActive = false;
    PhotoSelection selection = ctx.photo.selection();
    selection.setDrawn(0);
    ctx.photo.setSelection(selection);
}

EffectOutcome SelectionFlow::apply(const Operation &operation, const Operation &throughLasso) {
    if (m_ctx.photo.picCanvas().isNull()) {
        return EffectOutcome::Nothing;
    }
    if (marked(m_ctx) == Marked::WholePhoto) {
        return applyToWholePhoto(operation, true);
    }
    const EffectOutcome outcome = applyToMarked(operation, throughLasso);
    if (outcome != EffectOutcome::NoRegion) {
        hideSelection();
        m_ctx.flags.SelectionActive = false;
    }
    return outcome;
}

EffectOutcome SelectionFlow::applyToMarked(const Operation &operation, const Operation &throughLasso) {
    const Marked kind = marked(m_ctx);
    if (kind == Marked::Unknown) {
        return EffectOutcome::Nothing;
    }
    SelectionBounds bounds;
    if (!readBounds(bounds) || !marksPixels()) {
        Q_EMIT tipWanted();
        return EffectOutcome::NoRegion;
    }
    if (kind == Marked::Lasso) {
        return applyThroughLasso(throughLasso);
    }
    m_engine.setPicture(m_ctx.photo.picCanvas());
    m_engine.clearRegion();
    const auto setRegion = kind == Marked::Rectangle ? &EffectEngine::setRectangularRegion //
                                                     : &EffectEngine::setEllipticalRegion;
    (m_engine.*setRegion)(bounds.SelLeft, bounds.SelTop, bounds.SelRight, bounds.SelBottom);
    return take(compute(operation, true) ? m_engine.picture() : QImage(), true);
}

EffectOutcome SelectionFlow::applyThroughLasso(const Operation &operation) {
    m_engine.setPicture(m_ctx.photo.picCanvas());
    // Nothing but what lies in the box around the lasso will be pasted, so nothing else is computed.
    SelectionBounds bounds;
    readBounds(bounds);
    m_engine.setRectangularRegion(bounds.SelLeft, bounds.SelTop, bounds.SelRight, bounds.SelBottom);
    const bool done = compute(operation, true);
    const EffectOutcome outcome = take(done ? pastedThroughLasso(m_engine.picture()) : QImage(), true);
    PhotoSelection selection = m_ctx.photo.selection();
    selection.setDrawn(0);
    m_ctx.photo.setSelection(selection);
    return outcome;
}

EffectOutcome SelectionFlow::applyToWholePhoto(const Operation &operation, bool dummyPicture) {
    if (m_ctx.photo.picCanvas().isNull()) {
        return EffectOutcome::Nothing;
    }
    m_engine.setPicture(m_ctx.photo.picCanvas());
    m_engine.clearRegion();
    return take(compute(operation, false) ? m_engine.picture() : QImage(), dummyPicture);
}

void SelectionFlow::hideSelection() {
    PhotoSelection selection = m_ctx.photo.selection();
    selection.hide();
    m_ctx.photo.setSelection(selection);
}

/// False where the sums do not fit their integers: such a box lies outside every photo.
bool SelectionFlow::readBounds(SelectionBounds &bounds) const {
    const QRect &box = m_ctx.photo.selection().box();
    bounds.SelLeft = box.x();
    bounds.SelTop = box.y();
    return !qAddOverflow(box.x(), box.width(), &bounds.SelRight) &&
           !qAddOverflow(box.y(), box.height(), &bounds.SelBottom);
}

bool SelectionFlow::marksPixels() const {
    const PhotoSelection &selection = m_ctx.photo.selection();
    SelectionBounds bounds;
    const bool shaped = marked(m_ctx) != Marked::Lasso || selection.shape() == PhotoSelection::Shape::Lasso;
    return shaped && readBounds(bounds) && !selection.region(m_ctx.photo.picCanvas().size()).isEmpty();
}

bool SelectionFlow::compute(const Operation &operation, bool limitToRegion) {
    bool done = false;
    m_ctx.longWork.run([&] { done = m_engine.apply(operation, limitToRegion); });
    DoEvents();
    return done;
}

QImage SelectionFlow::pastedThroughLasso(const QImage &changed) const {
    const QImage &photo = m_ctx.photo.picCanvas();
    QImage next = photo; // its own pixels as soon as they are written to
    const Region &region = m_ctx.photo.selection().region(photo.size());
    return pasteThrough(next, changed, region, 0, 0, fullStrength) ? next : QImage();
}

/// A null picture says that the engine refused: the photo stays, what is said about it follows nevertheless.
EffectOutcome SelectionFlow::take(const QImage &next, bool dummyPicture) {
    m_engine.setPicture({}); // gives the buffer back: the engine keeps no second photo alive
    if (!next.isNull() && m_ctx.photo.changePhoto(next, {.dummyPicture = dummyPicture})) {
        return EffectOutcome::Done;
    }
    if (dummyPicture) {
        m_ctx.photo.CreateDummyPicture();
    }
    m_ctx.photo.setPhotoModified(true);
    return EffectOutcome::Refused;
}

} // namespace lumora
