#include "tools/crop/CropPanel.h"

#include "session/AppContext.h"
#include "tools/canvas/CanvasMouse.h"
#include "tools/crop/CropTip.h"
#include "widgets/PictureButton.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>
#include <utility>

namespace lumora {

CropPanel::CropPanel(AppContext &ctx, CanvasMouse &mouse, QWidget *window)
    : SlidingPanel("pnlCrop", "cmdpnlCropExit", window), m_ctx(ctx), m_mouse(mouse), m_tip(new CropTip(ctx, window)) {
    titleLabel()->setObjectName("LN2");
    const auto add = [this](const char *name, const char *icon, const char *identifier) {
        auto *button = new PictureButton(icon, PictureButton::CaptionPlace::Beside, this);
        button->setObjectName(name);
        button->setText(m_ctx.texts.text(identifier));
        button->setLook(PictureButton::Look::Raised);
        button->setPictureSize(40);
        button->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed); // its caption is never cut
        button->hide();
        return button;
    };
    m_cropNow = add("cmdCropNow", "ok", "BtnCrop");
    m_cropCutNow = add("cmdCropCutNow", "crop-background", "BtnCutout1");
    m_delInverse = add("cmdDelInverse", "crop-selection", "BtnCutout2");
    m_hint = new QLabel(this);
    m_hint->setObjectName("lblCropHint");
    m_hint->setWordWrap(true);
    auto *row = new QHBoxLayout;
    row->setSpacing(16);
    row->addWidget(m_cropNow);
    row->addWidget(m_cropCutNow);
    row->addWidget(m_delInverse);
    row->addWidget(m_hint, 1);
    body()->addLayout(row);

    connect(closeButton(), &QAbstractButton::clicked, this, &CropPanel::arrowWanted);
    connect(this, &SlidingPanel::closed, this, &CropPanel::close);
    mouse.cutOutShown = [this] { return m_cropCutNow->isVisible() && m_delInverse->isVisible(); };
}

void CropPanel::open(Use use, CanvasTool &tool) {
    close();
    m_tip->writeSetting();
    if (m_ctx.flags.ToolPanelShown) {
        Q_EMIT hideBoxesWanted(); // before anything is set: the tool that ends clears flags of its own
    }
    Q_EMIT hideFloatingToolbars();
    m_mouse.setTool(&tool);
    m_mouse.clearMarked();
    const bool crop = use == Use::Crop;
    m_use = use;
    m_mouse.EditMode = crop ? 1 : 2;
    m_mouse.MoveMode = false;
    m_ctx.flags.CropToolActive = crop;
    m_ctx.flags.SelectionActive = !crop;
    m_ctx.flags.RDMode = false;
    m_ctx.flags.ColorPickerMode = false;
    m_ctx.flags.FreeResizeActive = false;
    m_ctx.flags.canvasToolMode = 0;
    Q_EMIT toolsEnabled(false);
    titleLabel()->setText(m_ctx.texts.text(crop ? "CropDescription" : "SelectBkgDescription"));
    m_hint->setText(crop ? m_ctx.texts.text("CropHint")
                         : m_ctx.texts.text("CutOutHint", "Draw a line all the way round something."));
    m_cropNow->setVisible(crop);
    m_cropCutNow->setVisible(!crop);
    m_delInverse->setVisible(!crop);
    slideIn();
}

void CropPanel::close() {
    if (std::exchange(m_use, Use::None) == Use::None) {
        return;
    }
    m_ctx.flags.CropToolActive = false;
    m_ctx.flags.SelectionActive = false;
    m_ctx.flags.ToolPanelShown = false;
    m_mouse.EditMode = 0;
    m_tip->dismiss();
    Q_EMIT hideFloatingToolbars();
    m_mouse.clearMarked();
    slideOut();
    m_cropCutNow->hide();
    m_delInverse->hide();
    m_mouse.setTool(nullptr);
    Q_EMIT toolsEnabled(true);
}

void CropPanel::exit() {
    if (m_use != Use::None) {
        close();
        Q_EMIT arrowWanted();
    }
}

void CropPanel::moveEvent(QMoveEvent *event) {
    SlidingPanel::moveEvent(event);
    m_ctx.flags.ToolPanelShown = m_ctx.flags.ToolPanelShown || isOpen();
}

} // namespace lumora
