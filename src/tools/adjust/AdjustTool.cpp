#include "tools/adjust/AdjustTool.h"

#include "effects/ColourAdjustments.h"
#include "session/AppContext.h"
#include "tools/adjust/AdjustPanel.h"
#include "tools/canvas/CanvasMouse.h"
#include "tools/canvas/SmallPhoto.h"
#include "tools/select/SelectionTool.h"
#include "view/PhotoView.h"

#include <algorithm>
#include <utility>

namespace lumora {

namespace {

constexpr QSize itemPicture(120, 120); // pixels of FT6's pictures
const char *const titles[] = {"Brightness", "Contrast", "Saturation"};

bool isKind(int kind) {
    return kind >= 1 && kind <= int(colourAdjustments().size());
}

/// The operation of a kind.
EffectOperation operation(int kind, int amount) {
    const auto apply = colourAdjustments()[size_t(kind) - 1].apply;
    return [apply, amount](EffectEngine &engine, bool region) { return (engine.*apply)(region, amount); };
}

/// The picture as the adjustment makes it; as it is where the engine refuses.
QImage adjusted(const QImage &picture, int kind, int amount) {
    EffectEngine engine;
    engine.setPicture(picture);
    operation(kind, amount)(engine, false);
    return engine.picture();
}

} // namespace

AdjustTool::AdjustTool(AppContext &ctx, PhotoView &view, CanvasMouse &mouse, QWidget *window)
    : QObject(window), m_ctx(ctx), m_view(view), m_mouse(mouse), m_flow(ctx), m_live(ctx, view),
      m_panel(new AdjustPanel(window)) {
    connect(m_panel, &AdjustPanel::valueChanged, this, &AdjustTool::showValue);
    connect(m_panel, &AdjustPanel::compared, this, &AdjustTool::compare);
    connect(m_panel, &AdjustPanel::applyWanted, this, &AdjustTool::applyPanel);
    connect(m_panel, &SlidingPanel::closed, this, &AdjustTool::panelClosed);
    connect(&m_flow, &SelectionFlow::tipWanted, this, &AdjustTool::tipWanted);
    connect(&ctx.photo, &PhotoDocument::changed, this, [this](PhotoChanges what) {
        if (AdjustPanelShown && what.testAnyFlags(PhotoChange::Pixels | PhotoChange::Loaded)) {
            m_small = smallPhoto(m_view, AdjustPanel::pictureSize);
            m_panel->resetValue(AdjustKind); // it was meant for the photo before
            showValue();
        }
    });
}

SlidingPanel *AdjustTool::panel() const {
    return m_panel;
}

void AdjustTool::open(const QString &key) {
    const auto rows = colourAdjustments();
    const auto row = std::ranges::find(rows, key, &ColourAdjustment::key);
    if (row == rows.end() || m_ctx.photo.picCanvas().isNull()) {
        return;
    }
    const int kind = int(row - rows.begin()) + 1;
    if (!m_ctx.flags.SelectionActive || dynamic_cast<SelectionTool *>(m_mouse.tool()) == nullptr) {
        m_mouse.setTool(nullptr); // a selection can still be marked, other tools end
    }
    m_ctx.flags.EffectChosen = true;
    m_ctx.flags.RDMode = false;
    m_ctx.flags.FreeResizeActive = false;
    m_ctx.flags.CropToolActive = false;
    m_ctx.flags.ColorPickerMode = false;
    AdjustKind = kind;
    Q_EMIT hideFloatingToolbars();
    if (m_ctx.fields.txtSFX == Switch::Off) {
        close();
        if (ApplyBasicBCS(kind) != EffectOutcome::NoRegion) { // a selection can be made now, and tried again
            Q_EMIT arrowWanted();
        }
    } else if (m_ctx.fields.txtSFX == Switch::On) {
        m_small = smallPhoto(m_view, AdjustPanel::pictureSize);
        m_panel->showKind(kind, m_ctx.texts.text(titles[kind - 1]));
        AdjustPanelShown = true;
        m_ctx.flags.ToolPanelShown = true;
        showValue();
        m_panel->slideIn();
    }
}

void AdjustTool::close() {
    AdjustPanelShown = false; // it is not the user who closes it
    m_panel->slideOut();
    m_live.clear();
}

void AdjustTool::panelClosed() {
    m_live.clear();
    m_ctx.flags.ToolPanelShown = false;
    if (std::exchange(AdjustPanelShown, false)) {
        Q_EMIT arrowWanted();
    }
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
    if (outcome == EffectOutcome::Refused) {
        Q_EMIT message(m_ctx.texts.text("StatusNoMemory"), false);
    }
    if (!m_ctx.flags.SelectionActive) {
        m_mouse.setTool(nullptr); // what was marked is no longer, and neither is its pointer
    }
    return outcome;
}

void AdjustTool::applyPanel() {
    if (!isKind(AdjustKind)) {
        return;
    }
    if (m_panel->value(AdjustKind) == 0) { // an undo step that changes nothing would only puzzle
        Q_EMIT message(m_ctx.texts.text("MoveSliderFirst"), false);
        return;
    }
    m_live.clear();
    ApplyBCS(AdjustKind);
}

// --- What it would look like ----------------------------------------------------------------------------------------

/// On the photo, which stays untouched, and on the panel's small picture.
void AdjustTool::showValue() {
    if (!AdjustPanelShown) {
        return;
    }
    const int amount = m_panel->value(AdjustKind);
    m_panel->setPictures(m_small, adjusted(m_small, AdjustKind, amount));
    if (amount == 0) {
        m_live.clear();
        return;
    }
    m_live.show({.apply = [run = operation(AdjustKind, amount)](EffectEngine &engine, bool region, int) {
        return run(engine, region);
    }});
}

void AdjustTool::compare(bool before) {
    if (!before) {
        showValue();
        return;
    }
    m_live.clear();
    m_panel->setPictures(m_small, m_small);
}

void AdjustTool::CreateBCSSFX() {
    const QImage small = smallPhoto(m_view, itemPicture);
    if (small.isNull()) {
        return;
    }
    for (int kind = 1; isKind(kind); ++kind) {
        Q_EMIT pictureMade(colourAdjustments()[size_t(kind) - 1].key,
                           QPixmap::fromImage(adjusted(small, kind, basicAmount)));
    }
}

} // namespace lumora
