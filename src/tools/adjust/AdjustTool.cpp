#include "tools/adjust/AdjustTool.h"

#include "effects/EffectTable.h"
#include "imaging/EffectEngine.h"
#include "session/AppContext.h"
#include "session/PlainWords.h"
#include "tools/adjust/AdjustPanel.h"
#include "tools/canvas/CanvasMouse.h"
#include "tools/canvas/SmallPhoto.h"
#include "tools/select/SelectionTool.h"
#include "view/PhotoView.h"
#include "widgets/FloatingToolbar.h"
#include "widgets/Theme.h"

#include <QPainter>

#include <algorithm>

namespace lumora {

namespace {

constexpr QSize itemPicture(120, 120); // pixels of FT6's pictures
constexpr QSize lookedAt(256, 256);    // as many as a photo's faults are found on, so that small pictures show the same

bool isKind(int kind) {
    return findEffect(EffectGroup::Adjustment, kind) != nullptr;
}

/// The operation of a kind.
Operation operation(int kind, int amount) {
    return operationOf(*findEffect(EffectGroup::Adjustment, kind), false, {amount}, 1);
}

/// The item's picture, with the adjustment's icon in its lower corner.
QPixmap withIcon(const QImage &picture, const Effect &adjustment) {
    QPixmap result = QPixmap::fromImage(picture);
    const int side = qMin(result.width(), result.height()) * 5 / 8;
    QPainter painter(&result);
    painter.drawPixmap(result.width() - side, result.height() - side, iconPixmap(adjustment.icon, side, 1));
    return result;
}

/// The adjusted picture; unchanged when the engine fails.
QImage adjusted(const QImage &picture, int kind, int amount) {
    EffectEngine engine;
    engine.setPicture(picture);
    engine.apply(operation(kind, amount), false);
    return engine.picture();
}

} // namespace

AdjustTool::AdjustTool(AppContext &ctx, PhotoView &view, CanvasMouse &mouse, FloatingToolbar *FT6, QWidget *window)
    : EditorTool(window), m_ctx(ctx), m_view(view), m_mouse(mouse), m_FT6(FT6), m_flow(ctx), m_live(ctx, view),
      m_panel(new AdjustPanel(window)) {
    connect(m_panel, &AdjustPanel::valueChanged, this, &AdjustTool::showValue);
    connect(m_panel, &AdjustPanel::compared, this, &AdjustTool::compare);
    connect(m_panel, &AdjustPanel::applyWanted, this, &AdjustTool::applyPanel);
    connect(m_panel, &SlidingPanel::closed, &m_live, &LivePreview::clear);
    connect(m_panel, &SlidingPanel::left, this, &AdjustTool::finished);
    connect(&m_flow, &SelectionFlow::tipWanted, this, &AdjustTool::tipWanted);
    connect(&ctx.photo, &PhotoDocument::changed, this, [this](PhotoChanges what) {
        if (AdjustPanelShown() && what.testAnyFlags(PhotoChange::Pixels | PhotoChange::Loaded)) {
            m_small = smallPhoto(m_view, lookedAt);
            m_panel->resetValue(AdjustKind); // it was for the previous photo; applied, it is in the photo
            showValue();
        }
    });
}

SlidingPanel *AdjustTool::panel() const {
    return m_panel;
}

bool AdjustTool::AdjustPanelShown() const {
    return m_panel->isOpen();
}

bool AdjustTool::staysFor(const EditorTool &next) const {
    return &next == this || qobject_cast<const SelectionTool *>(&next) != nullptr;
}

bool AdjustTool::open(const QString &key) {
    const Effect *adjustment = findEffect(EffectGroup::Adjustment, key);
    if (adjustment == nullptr || m_ctx.photo.picCanvas().isNull()) {
        return false;
    }
    AdjustKind = adjustment->number;
    if (!m_ctx.flags.SelectionActive()) {
        m_mouse.setTool(nullptr); // a selection can still be made, other tools end
    }
    if (m_ctx.fields.txtSFX == Switch::Off) {
        close();
        if (ApplyBasicBCS(AdjustKind) != EffectOutcome::NoRegion) { // a selection can be made now before the next try
            Q_EMIT finished();
        }
        return false;
    }
    if (m_ctx.fields.txtSFX != Switch::On) {
        Q_EMIT message(oddSetting(m_ctx.texts, Setting::AdvancedEffects), false);
        return false;
    }
    m_small = smallPhoto(m_view, lookedAt);
    m_panel->showKind(AdjustKind, m_ctx.texts.text(adjustment->name));
    m_panel->slideIn();
    showValue();
    return true;
}

void AdjustTool::close() {
    m_panel->slideOut();
}

// --- Applying -------------------------------------------------------------------------------------------------------

EffectOutcome AdjustTool::ApplyBasicBCS(int kind) {
    return apply(kind, basicAmount);
}

EffectOutcome AdjustTool::ApplyBCS(int kind) {
    return isKind(kind) ? apply(kind, m_panel->value(kind)) : EffectOutcome::Nothing;
}

EffectOutcome AdjustTool::apply(int kind, int amount) {
    if (!isKind(kind)) {
        return EffectOutcome::Nothing;
    }
    const EffectOutcome outcome = m_flow.apply(operation(kind, amount));
    if (isFailure(outcome)) {
        Q_EMIT message(m_ctx.texts.text("StatusNoMemory"), false);
    }
    return outcome;
}

void AdjustTool::applyPanel() {
    if (!isKind(AdjustKind)) {
        return;
    }
    if (m_panel->value(AdjustKind) == 0) { // an undo step without a change would be confusing
        Q_EMIT message(m_ctx.texts.text("MoveSliderFirst"), false);
        return;
    }
    m_live.clear();
    ApplyBCS(AdjustKind);
}

// --- Preview ---------------------------------------------------------------------------------------------------------

/// On the photo, which is not changed, and in the panel's preview.
void AdjustTool::showValue() {
    if (!AdjustPanelShown()) {
        return;
    }
    const int amount = m_panel->value(AdjustKind);
    showPictures(adjusted(m_small, AdjustKind, amount));
    if (amount == 0) {
        m_live.clear();
        return;
    }
    m_live.show({.operation = [run = operation(AdjustKind, amount)](int) { return run; }});
}

void AdjustTool::showPictures(const QImage &after) {
    const auto small = [this](const QImage &picture) { return scaledInto(picture, m_view, AdjustPanel::pictureSize); };
    m_panel->setPictures(small(m_small), small(after));
}

void AdjustTool::compare(bool before) {
    if (!before) {
        showValue();
        return;
    }
    m_live.clear();
    showPictures(m_small);
}

void AdjustTool::CreateBCSSFX() {
    const QImage small = smallPhoto(m_view, lookedAt);
    if (small.isNull() || m_FT6 == nullptr) {
        return;
    }
    for (const Effect &adjustment : effects(EffectGroup::Adjustment)) {
        const QImage picture = scaledInto(adjusted(small, adjustment.number, basicAmount), m_view, itemPicture);
        m_FT6->setItemPicture(adjustment.key(),
                              adjustment.showsIcon ? withIcon(picture, adjustment) : QPixmap::fromImage(picture));
    }
}

} // namespace lumora
