#include "window/ToolSet.h"

#include "effects/EffectPreviews.h"
#include "effects/EffectsPanel.h"
#include "effects/Frames.h"
#include "session/AppContext.h"
#include "session/PlainWords.h"
#include "tools/adjust/AdjustTool.h"
#include "tools/canvas/CanvasMouse.h"
#include "tools/colour-focus/ColourFocusTool.h"
#include "tools/crop/CropPanel.h"
#include "tools/crop/CropTool.h"
#include "tools/cut-out/CutOutTool.h"
#include "tools/pop-art/PopArtTool.h"
#include "tools/red-eye/RedEyeTool.h"
#include "tools/resize/ResizeTool.h"
#include "tools/rotate/RotateTool.h"
#include "tools/select/SelectionOutline.h"
#include "tools/select/SelectionTool.h"
#include "view/PhotoView.h"
#include "widgets/Bubble.h"
#include "widgets/FloatingToolbar.h"
#include "window/FloatingBarSet.h"
#include "window/ToolColumn.h"
#include "window/ToolTable.h"

#include <QAbstractSlider>
#include <QLabel>
#include <QScopedValueRollback>
#include <algorithm>

namespace lumora {

ToolSet::ToolSet(AppContext &ctx, PhotoView &view, ToolColumn &column, FloatingBarSet &bars, QWidget *window)
    : QObject(window), m_ctx(ctx), m_view(view), m_column(column), m_bars(bars), m_basicEffects(ctx),
      m_specialEffects(ctx), m_outline(new SelectionOutline(ctx.photo, view, this)),
      m_mouse(new CanvasMouse(ctx.photo, ctx.flags, view, this)),
      m_selection(new SelectionTool(ctx.photo, ctx.flags, *m_mouse, *m_outline, this)),
      m_panelSFX(new EffectsPanel(ctx, m_specialEffects, view, window)),
      m_frames(new Frames(ctx, bars.bar("FT5"), this)), m_crop(new CropTool(ctx, view, *m_mouse, window)),
      m_cutOut(new CutOutTool(ctx, view, *m_mouse, *m_crop->panel(), *m_selection, this)),
      m_rotate(new RotateTool(ctx, view, *m_mouse, this)), m_resize(new ResizeTool(ctx, view, *m_mouse, window)),
      m_adjust(new AdjustTool(ctx, view, *m_mouse, window)), m_redEye(new RedEyeTool(ctx, view, *m_mouse, window)),
      m_focus(new ColourFocusTool(ctx, view, *m_mouse, window)), m_popArt(new PopArtTool(ctx, view, *m_mouse, window)),
      m_previews(new EffectPreviews(ctx, bars.bar("FT3"), bars.bar("FT4"), this)),
      picTip(new Bubble("picTip", window)), m_panels{m_panelSFX,        m_crop->panel(),   m_resize->panel(),
                                                     m_adjust->panel(), m_redEye->panel(), m_focus->panel(),
                                                     m_popArt->panel()} {
    picTip->label()->setObjectName("lblBubble");
    connectSelection();
    connectEffects();
    connectTool(*m_crop->panel());
    connectTool(*m_rotate);
    connectTool(*m_resize);
    connectTool(*m_adjust);
    connectTool(*m_redEye);
    connectTool(*m_focus);
    connectTool(*m_popArt);
    connect(m_popArt, &PopArtTool::fitWanted, this, &ToolSet::fitWanted);
    connect(m_resize, &ResizeTool::current, this, [this] { // from its panel to the frame by hand
        m_current = "cmdTool4";
        showCurrent();
    });
    connect(m_resize, &ResizeTool::statusText, this, &ToolSet::statusText);
    connect(m_resize, &ResizeTool::noticeWanted, this, &ToolSet::noticeWanted);
    for (SlidingPanel *panel : m_panels) {
        connectPanel(*panel);
    }
    connectPreviews();
    column.button("cmdCropCut")->setHoverColour(Qt::white);
    connect(&column, &ToolColumn::pressed, this, &ToolSet::press);
    connect(&bars, &FloatingBarSet::itemClicked, this, &ToolSet::pick);
}

ToolSet::~ToolSet() {
    m_mouse->setTool(nullptr); // before the tools go
}

void ToolSet::connectSelection() {
    connect(m_selection, &SelectionTool::chosen, this, [this](const QString &icon) {
        m_column.button("cmdTool2")->setIconName(icon);
        HideFloatingToolbars();
    });
    connect(m_mouse, &CanvasMouse::arrowWanted, this, &ToolSet::ResetTools);
    connect(m_mouse, &CanvasMouse::moved, picTip, &QWidget::hide);
}

void ToolSet::connectEffects() {
    connect(m_panelSFX, &EffectsPanel::hideFloatingToolbars, this, &ToolSet::HideFloatingToolbars);
    connect(m_panelSFX, &EffectsPanel::selectionToolWanted, this,
            [this] { m_column.button("cmdTool2")->setEnabled(true); });
    connect(m_panelSFX, &EffectsPanel::applied, this, &ToolSet::tellOutcome);
    connect(&m_basicEffects.flow(), &SelectionFlow::tipWanted, this, &ToolSet::showTip);
    connect(&m_specialEffects.flow(), &SelectionFlow::tipWanted, this, &ToolSet::showTip);
}

void ToolSet::connectPreviews() {
    m_previews->makers = {.CreateCMSFX = [this] { m_focus->CreateCMSFX(); },
                          .CreateTHMRorationSFX = [this] { m_rotate->CreateTHMRorationSFX(*m_bars.bar("FT2")); },
                          .CreateBCSSFX = [this] { m_adjust->CreateBCSSFX(); },
                          .CreateFrameThumbnails = [this] { m_frames->CreateFrameThumbnails(); }};
    connect(m_adjust, &AdjustTool::pictureMade, m_bars.bar("FT6"), &FloatingToolbar::setItemPicture);
    connect(&m_ctx.photo, &PhotoDocument::changed, this, [this](PhotoChanges what) {
        if (what.testAnyFlags(PhotoChange::Pixels | PhotoChange::Loaded)) {
            HideFloatingToolbars(); // their small pictures are of another photo
        }
    });
}

/// What the tools have in common; not every one says everything.
template <typename Tool> void ToolSet::connectTool(Tool &tool) {
    connect(&tool, &Tool::hideFloatingToolbars, this, &ToolSet::HideFloatingToolbars);
    connect(&tool, &Tool::arrowWanted, this, &ToolSet::ResetTools);
    connect(&tool, &Tool::message, this, &ToolSet::message);
    if constexpr (requires { &Tool::toolsEnabled; }) {
        connect(&tool, &Tool::toolsEnabled, this, &ToolSet::enableTools);
    }
    if constexpr (requires { &Tool::tipWanted; }) {
        connect(&tool, &Tool::tipWanted, this, &ToolSet::showTip);
    }
}

void ToolSet::connectPanel(SlidingPanel &panel) {
    connect(&panel, &SlidingPanel::opened, this, [this, &panel] {
        for (auto *slider : panel.findChildren<QAbstractSlider *>()) {
            if (slider->isVisible()) {
                slider->setFocus(Qt::OtherFocusReason);
                break;
            }
        }
        Q_EMIT panelChanged();
    });
    connect(&panel, &SlidingPanel::closed, this, [this] {
        if (!m_ending) {
            ResetTools();
        }
        m_view.setFocus();
        Q_EMIT buttonsToRefresh();
        Q_EMIT panelChanged();
    });
}

// --- Buttons and items ----------------------------------------------------------------------------------------------

void ToolSet::press(const QString &control) {
    if (!m_ctx.photo.PhotoLoaded() || control == "cmdTool1") {
        HideFloatingToolbars();
        ResetTools();
    } else if (m_bars.barOfTool(control) != nullptr) {
        toggleBar(control);
    } else {
        openTool(control);
    }
}

/// Opens the tool's bar beside its button, or closes it. Nothing else begins or ends before an item is picked.
void ToolSet::toggleBar(const QString &control) {
    FloatingToolbar *bar = m_bars.barOfTool(control);
    const bool wasOpen = bar->isVisible();
    HideFloatingToolbars();
    if (wasOpen) {
        return;
    }
    if (control == "cmdTool5") {
        m_rotate->CreateTHMRorationSFX(*bar);
    }
    m_column.setCurrent(control);
    bar->showBeside(m_column.button(control));
}

void ToolSet::openTool(const QString &control) {
    HideFloatingToolbars();
    endTools();
    m_current = control;
    if (control == "cmdTool3") {
        m_crop->openCrop();
    } else if (control == "cmdTool4") {
        m_resize->open();
    } else if (control == "cmdTool6") {
        m_redEye->open();
    } else if (control == "cmdTool11") {
        m_focus->open();
    } else if (control == "cmdCropCut") {
        m_cutOut->openCutOut();
    }
    showCurrent();
}

void ToolSet::pick(const QString &bar, const QString &key) {
    HideFloatingToolbars();
    m_view.setFocus(); // the item that had it is gone
    if (bar == "FT1") {
        // A panel of effects or adjustments stays: it then changes what is marked.
        endTools(m_panelSFX->isOpen() ? static_cast<SlidingPanel *>(m_panelSFX) : m_adjust->panel());
        m_current = "cmdTool2";
        m_selection->choose(key);
        Q_EMIT message(m_ctx.texts.text("StatusSelection"), true);
    } else if (bar == "FT2") {
        endTools();
        m_current = "cmdTool5";
        m_rotate->choose(key);
    } else if (bar == "FT3") {
        endTools();
        tellOutcome(m_basicEffects.apply(key));
    } else if (bar == "FT4") {
        endTools(m_panelSFX);
        m_current = "cmdTool10";
        m_panelSFX->pick(key);
    } else if (bar == "FT5") {
        endTools();
        tellOutcome(m_frames->pick(key) ? EffectOutcome::Done : EffectOutcome::Refused);
    } else if (bar == "FT6") {
        endTools(m_adjust->panel());
        m_current = "cmdTool9";
        m_adjust->open(key);
    }
    showCurrent();
}

void ToolSet::openPopArt() {
    ResetTools();
    m_popArt->open();
}

void ToolSet::tellOutcome(EffectOutcome outcome) {
    if (outcome == EffectOutcome::Refused) {
        Q_EMIT message(plainWords(m_ctx.texts, PictureError::NoMemory), false);
    }
    if (!m_ctx.flags.SelectionActive && openPanel() == nullptr) {
        ResetTools();
    }
}

void ToolSet::showTip() {
    const SlidingPanel *panel = openPanel();
    QWidget *selectionTool = m_column.button("cmdTool2");
    picTip->pointAt(panel != nullptr && !selectionTool->isEnabled() ? panel->titleLabel() : selectionTool);
    Q_EMIT message(picTip->label()->text(), false); // stays when the pointer moves
}

void ToolSet::showCurrent() {
    const bool marking = m_ctx.flags.SelectionActive && openPanel() == nullptr && m_current != "cmdCropCut";
    m_column.setCurrent(marking ? "cmdTool2" : m_current);
}

// --- The whole ------------------------------------------------------------------------------------------------------

void ToolSet::HideFloatingToolbars() {
    m_bars.HideFloatingToolbars();
    showCurrent();
}

/// Ends every tool; the panel of one may stay. What is marked stays marked unless its tool drops it.
void ToolSet::endTools(const SlidingPanel *butFor) {
    if (m_ending) {
        return;
    }
    const QScopedValueRollback ending(m_ending, true);
    if (butFor != m_panelSFX) {
        m_panelSFX->slideOut();
    }
    if (butFor != m_adjust->panel()) {
        m_adjust->close();
    }
    m_crop->close();
    m_cutOut->close();
    m_rotate->close();
    m_resize->close();
    m_redEye->close();
    m_focus->close();
    m_popArt->close();
    m_ctx.flags.ToolPanelShown = butFor != nullptr && butFor->isOpen();
    m_ctx.flags.FreeResizeActive = false;
    enableTools(true);
}

void ToolSet::enableTools(bool enabled) {
    m_column.EnableToolbars();
    if (enabled) {
        return;
    }
    for (const ToolRow &row : toolTable()) {
        const bool stays =
            row.control == QLatin1StringView("cmdTool1") || (row.control == m_current && m_current != "cmdTool5");
        m_column.button(row.control)->setEnabled(stays);
    }
}

void ToolSet::HideBoxes() {
    HideFloatingToolbars();
    if (openPanel() != nullptr) {
        ResetTools();
    }
}

void ToolSet::ResetTools() {
    if (m_ending) {
        return; // whoever ends the tools says what comes next
    }
    endTools();
    m_current = "cmdTool1";
    m_ctx.flags.SelectionActive = false;
    m_ctx.flags.ColorPickerMode = false;
    m_ctx.flags.RDMode = false;
    m_ctx.flags.CropToolActive = false;
    m_ctx.flags.canvasToolMode = 0;
    m_mouse->setTool(nullptr);
    if (!m_ctx.photo.selection().isEmpty()) {
        m_mouse->clearMarked();
    }
    picTip->hide();
    showCurrent();
}

void ToolSet::escape() {
    if (m_bars.isAnyOpen()) {
        HideFloatingToolbars();
    } else {
        ResetTools();
    }
}

void ToolSet::setArea(const QRect &area) {
    for (SlidingPanel *panel : m_panels) {
        panel->setArea(area);
    }
}

SlidingPanel *ToolSet::openPanel() const {
    const auto open = std::ranges::find_if(m_panels, &SlidingPanel::isOpen);
    return open != m_panels.end() ? *open : nullptr;
}

} // namespace lumora
