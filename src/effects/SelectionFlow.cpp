#include "effects/SelectionFlow.h"

#include "imaging/transforms/Canvas.h"
#include "session/AppContext.h"
#include "session/DoEvents.h"

#include <QtNumeric>

namespace lumora {

namespace {

using Shape = PhotoSelection::Shape;

constexpr int fullStrength = 100; // per cent of a paste

QImage pastedThrough(const Region &region, const QImage &photo, const QImage &changed) {
    QImage next = photo; // detaches on write
    return pasteThrough(next, changed, region, 0, 0, fullStrength) ? next : QImage();
}

} // namespace

EffectOutcome SelectionFlow::apply(const Operation &operation, const Operation &throughLasso) {
    if (m_ctx.photo.picCanvas().isNull()) {
        return EffectOutcome::Nothing;
    }
    if (!m_ctx.flags.SelectionActive()) {
        return applyToWholePhoto(operation);
    }
    const EffectOutcome outcome = applyToMarked(operation, throughLasso);
    if (outcome == EffectOutcome::Done || outcome == EffectOutcome::Nothing || outcome == EffectOutcome::Refused) {
        hideSelection();
        m_ctx.flags.endSelection();
    }
    return outcome;
}

EffectOutcome SelectionFlow::applyToMarked(const Operation &operation, const Operation &throughLasso) {
    const Shape kind = m_ctx.flags.SelectionKind();
    SelectionBounds bounds;
    if (!readBounds(bounds) || !marksPixels()) {
        Q_EMIT tipWanted();
        return EffectOutcome::NoRegion;
    }
    if (kind == Shape::Lasso) {
        return applyThroughLasso(throughLasso);
    }
    m_engine.setPicture(m_ctx.photo.picCanvas());
    m_engine.clearRegion();
    const auto setRegion = kind == Shape::Rectangle ? &EffectEngine::setRectangularRegion //
                                                    : &EffectEngine::setEllipticalRegion;
    (m_engine.*setRegion)(bounds.SelLeft, bounds.SelTop, bounds.SelRight, bounds.SelBottom);
    return change([&] { return m_engine.apply(operation, true) ? m_engine.picture() : QImage(); });
}

EffectOutcome SelectionFlow::applyThroughLasso(const Operation &operation) {
    if (m_ctx.photo.picCanvas().isNull() || !marksPixels()) {
        return EffectOutcome::Nothing;
    }
    m_engine.setPicture(m_ctx.photo.picCanvas());
    // Only the bounding box of the lasso is pasted, so nothing else is computed.
    SelectionBounds bounds;
    readBounds(bounds);
    m_engine.setRectangularRegion(bounds.SelLeft, bounds.SelTop, bounds.SelRight, bounds.SelBottom);
    const QImage photo = m_ctx.photo.picCanvas();
    PhotoSelection selection = m_ctx.photo.selection();
    const Region &region = selection.region(photo.size());
    const EffectOutcome outcome = change(
        [&] { return m_engine.apply(operation, true) ? pastedThrough(region, photo, m_engine.picture()) : QImage(); });
    if (outcome == EffectOutcome::Stopped || outcome == EffectOutcome::NoMemory) {
        return outcome;
    }
    selection = m_ctx.photo.selection();
    selection.setDrawn(0);
    m_ctx.photo.setSelection(selection);
    return outcome;
}

EffectOutcome SelectionFlow::applyToWholePhoto(const Operation &operation) {
    if (m_ctx.photo.picCanvas().isNull()) {
        return EffectOutcome::Nothing;
    }
    m_engine.setPicture(m_ctx.photo.picCanvas());
    m_engine.clearRegion();
    return change([&] { return m_engine.apply(operation, false) ? m_engine.picture() : QImage(); });
}

void SelectionFlow::hideSelection() {
    m_ctx.photo.useUpSelection();
}

/// False when the sums overflow: such a box is outside every photo.
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
    const bool shaped = m_ctx.flags.SelectionKind() != Shape::Lasso || selection.shape() == Shape::Lasso;
    return shaped && readBounds(bounds) && !selection.region(m_ctx.photo.picCanvas().size()).isEmpty();
}

EffectOutcome SelectionFlow::change(const std::function<QImage()> &compute) {
    QImage next;
    bool outOfMemory = false;
    const bool isWhole = m_ctx.tasks.run(
        [&] {
            try {
                next = compute();
                outOfMemory = next.isNull() && m_engine.isOutOfMemory();
            } catch (const std::bad_alloc &) {
                outOfMemory = true;
            }
        },
        Stopping::Offered);
    m_engine.setPicture({}); // releases the buffer: the engine keeps no second copy of the photo
    DoEvents();
    if (!isWhole) {
        return EffectOutcome::Stopped;
    }
    return outOfMemory ? EffectOutcome::NoMemory : take(next);
}

/// A null picture means that the engine failed: the photo stays, and its signals are still emitted.
EffectOutcome SelectionFlow::take(const QImage &next) {
    if (!next.isNull()) {
        return m_ctx.photo.changePhoto(next) ? EffectOutcome::Done : EffectOutcome::NoMemory;
    }
    m_ctx.photo.CreateDummyPicture();
    m_ctx.photo.setPhotoModified(true);
    return EffectOutcome::Refused;
}

} // namespace lumora
