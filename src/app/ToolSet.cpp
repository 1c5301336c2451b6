#include "app/ToolSet.h"

#include "app/FloatingBarSet.h"
#include "app/PlainWords.h"
#include "app/ToolColumn.h"
#include "app/settings/AppContext.h"
#include "document/PhotoView.h"
#include "effects/EffectPreviews.h"
#include "effects/Frames.h"
#include "tools/CanvasMouse.h"
#include "tools/FloatingBars.h"
#include "tools/SelectionOutline.h"
#include "tools/SelectionTool.h"
#include "widgets/Bubble.h"
#include "widgets/FloatingToolbar.h"

#include <QAbstractSlider>
#include <QLabel>

namespace lumora {

ToolSet::ToolSet(AppContext &ctx, PhotoView &view, ToolColumn &column, FloatingBarSet &bars, QWidget *window)
    : QObject(window), m_ctx(ctx), m_view(view), m_column(column), m_bars(bars), m_basicEffects(ctx),
      m_specialEffects(ctx), m_outline(new SelectionOutline(ctx.photo, view, this)),
      m_mouse(new CanvasMouse(ctx.photo, ctx.flags, view, this)),
      m_selection(new SelectionTool(ctx.photo, ctx.flags, *m_mouse, *m_outline, this)),
      m_panelSFX(new EffectsPanel(ctx, m_specialEffects, view, window)),
      m_previews(new EffectPreviews(ctx, bars.bar("FT3"), bars.bar("FT4"), this)),
      m_frames(new Frames(ctx, bars.bar("FT5"), this)), picTip(new Bubble("picTip", window)) {
    picTip->label()->setObjectName("lblBubble");
    connectSelection();
    connectEffects();
    connect(&column, &ToolColumn::pressed, this, &ToolSet::press);
    connect(&bars, &FloatingBarSet::itemClicked, this, &ToolSet::pick);
    connect(&ctx.photo, &PhotoDocument::changed, this, [this](PhotoChanges what) {
        if (what.testAnyFlags(PhotoChange::Pixels | PhotoChange::Loaded)) {
            HideFloatingToolbars(); // their small pictures are of another photo
        }
    });
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
    connectPanel(*m_panelSFX);
    m_previews->makers.CreateFrameThumbnails = [this] { m_frames->CreateFrameThumbnails(); };
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
        ResetTools();
        m_view.setFocus();
        Q_EMIT buttonsToRefresh();
        Q_EMIT panelChanged();
    });
}

// --- Buttons and items ----------------------------------------------------------------------------------------------

void ToolSet::press(const QString &control) {
    if (!m_ctx.photo.PhotoLoaded()) {
        ResetTools();
    } else if (m_bars.barOfTool(control) != nullptr) {
        toggleBar(control);
    } else {
        HideFloatingToolbars();
        HideBoxes();
        ResetTools();
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
    m_column.setCurrent(control);
    bar->showBeside(m_column.button(control));
}

void ToolSet::pick(const QString &bar, const QString &key) {
    HideFloatingToolbars();
    m_view.setFocus(); // the item that had it is gone
    if (bar == "FT1") {
        m_selection->choose(key);
    } else if (bar == "FT3") {
        HideBoxes();
        tellOutcome(m_basicEffects.apply(key));
    } else if (bar == "FT4") {
        m_panelSFX->pick(key);
    } else if (bar == "FT5") {
        HideBoxes();
        tellOutcome(m_frames->pick(key) ? EffectOutcome::Done : EffectOutcome::Refused);
    }
    showCurrent();
}

void ToolSet::tellOutcome(EffectOutcome outcome) {
    if (outcome == EffectOutcome::Refused) {
        Q_EMIT message(plainWords(m_ctx.texts, PictureError::NoMemory));
    }
    if (!m_ctx.flags.SelectionActive && openPanel() == nullptr) {
        ResetTools();
    }
}

void ToolSet::showTip() {
    picTip->pointAt(m_column.button("cmdTool2"));
    Q_EMIT message(picTip->label()->text()); // stays when the pointer moves
}

void ToolSet::showCurrent() {
    if (openPanel() != nullptr) {
        m_column.setCurrent("cmdTool10");
    } else {
        m_column.setCurrent(m_ctx.flags.SelectionActive ? "cmdTool2" : "cmdTool1");
    }
}

// --- The whole ------------------------------------------------------------------------------------------------------

void ToolSet::HideFloatingToolbars() {
    m_bars.HideFloatingToolbars();
    showCurrent();
}

void ToolSet::HideBoxes() {
    HideFloatingToolbars();
    m_panelSFX->slideOut();
    m_ctx.flags.ToolPanelShown = false;
}

void ToolSet::ResetTools() {
    m_ctx.flags.SelectionActive = false;
    m_ctx.flags.FreeResizeActive = false;
    m_ctx.flags.ColorPickerMode = false;
    m_ctx.flags.RDMode = false;
    m_mouse->setTool(nullptr);
    if (!m_ctx.photo.selection().isEmpty()) {
        m_mouse->clearMarked();
    }
    picTip->hide();
    showCurrent();
}

void ToolSet::escape() {
    for (const FloatingBarRow &row : floatingBars()) {
        if (m_bars.bar(row.bar)->isVisible()) {
            HideFloatingToolbars();
            return;
        }
    }
    if (openPanel() != nullptr) {
        HideBoxes();
    } else {
        ResetTools();
    }
}

void ToolSet::setArea(const QRect &area) {
    m_panelSFX->setArea(area);
}

SlidingPanel *ToolSet::openPanel() const {
    return m_panelSFX->isOpen() ? m_panelSFX : nullptr;
}

} // namespace lumora
