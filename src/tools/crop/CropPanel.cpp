#include "tools/crop/CropPanel.h"

#include "session/AppContext.h"
#include "tools/crop/CropTip.h"
#include "widgets/PictureButton.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace lumora {

CropPanel *CropPanel::of(QWidget *window, AppContext &ctx) {
    auto *panel = window->findChild<CropPanel *>();
    return panel != nullptr ? panel : new CropPanel(ctx, window);
}

CropPanel::CropPanel(AppContext &ctx, QWidget *window)
    : SlidingPanel("pnlCrop", "cmdpnlCropExit", window), m_ctx(ctx), m_tip(new CropTip(ctx, window)) {
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

    connect(this, &SlidingPanel::closed, this, [this] {
        m_tip->dismiss();
        m_cropCutNow->hide();
        m_delInverse->hide();
    });
}

void CropPanel::prepare(Use use) {
    m_tip->writeSetting();
    const bool crop = use == Use::Crop;
    titleLabel()->setText(m_ctx.texts.text(crop ? "CropDescription" : "SelectBkgDescription"));
    m_hint->setText(crop ? m_ctx.texts.text("CropHint")
                         : m_ctx.texts.text("CutOutHint", "Draw a line all the way round something."));
    m_cropNow->setVisible(crop);
    m_cropCutNow->setVisible(!crop);
    m_delInverse->setVisible(!crop);
}

} // namespace lumora
