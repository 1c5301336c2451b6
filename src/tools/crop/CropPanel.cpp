#include "tools/crop/CropPanel.h"

#include "session/AppContext.h"
#include "tools/crop/CropShape.h"
#include "tools/crop/CropTip.h"
#include "widgets/PictureButton.h"
#include "widgets/WindowTexts.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QVBoxLayout>

namespace lumora {

namespace {

constexpr int shapePicture = 36; // pixels

} // namespace

CropPanel *CropPanel::of(QWidget *window, AppContext &ctx) {
    auto *panel = window->findChild<CropPanel *>();
    return panel != nullptr ? panel : new CropPanel(ctx, window);
}

CropPanel::CropPanel(AppContext &ctx, QWidget *window)
    : SlidingPanel("pnlCrop", "cmdpnlCropExit", window), m_ctx(ctx), m_tip(new CropTip(ctx, window)),
      m_shape(&cropShapes().front()) {
    titleLabel()->setObjectName("LN2");
    const auto add = [this](const char *name, const char *icon, const char *identifier) {
        auto *button = new PictureButton(icon, PictureButton::CaptionPlace::Beside, this);
        button->setObjectName(name);
        showText(m_ctx.texts, *button, identifier);
        button->setLook(PictureButton::Look::Raised);
        button->setPictureSize(40);
        button->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed); // its caption is never cut
        button->hide();
        return button;
    };
    m_cropNow = add("cmdCropNow", "ok", "BtnCrop");
    m_cropCutNow = add("cmdCropCutNow", "crop-background", "BtnCutout1");
    m_delInverse = add("cmdDelInverse", "crop-selection", "BtnCutout2");
    auto *row = new QHBoxLayout;
    row->setSpacing(16);
    row->addWidget(m_cropNow);
    row->addWidget(m_cropCutNow);
    row->addWidget(m_delInverse);
    row->addStretch(1);
    body()->addLayout(row);
    addShapes();

    connect(this, &SlidingPanel::closed, this, [this] {
        m_tip->dismiss();
        m_cropCutNow->hide();
        m_delInverse->hide();
    });
}

void CropPanel::addShapes() {
    m_shapes = new QWidget(this);
    auto *row = new QHBoxLayout(m_shapes);
    row->setContentsMargins(0, 0, 0, 0);
    row->setSpacing(4);
    const auto add = [&](const char *name, const char *icon, const char *identifier) {
        auto *button = new PictureButton(icon, PictureButton::CaptionPlace::Below, m_shapes);
        button->setObjectName(name);
        showText(m_ctx.texts, *button, identifier);
        button->setPictureSize(shapePicture);
        button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
        row->addWidget(button);
        return button;
    };
    m_shapeButtons = new QButtonGroup(this);
    for (const CropShape &shape : cropShapes()) {
        PictureButton *button = add(shape.button, shape.icon, shape.caption);
        connect(button, &QAbstractButton::clicked, this, [this, &shape] { takeShape(shape); });
        if (shape.kind != CropShape::Kind::WholePhoto) {
            button->setCheckable(true);
            m_shapeButtons->addButton(button);
        }
    }
    m_turn = add("cmdCropTurn", "crop-turn", "CropTurn");
    connect(m_turn, &QAbstractButton::clicked, this, &CropPanel::turnShape);
    chooseFreeFrame();
    body()->addWidget(m_shapes);
}

QSize CropPanel::sides() const {
    return m_upright ? m_shape->sides.transposed() : m_shape->sides;
}

void CropPanel::chooseFreeFrame() {
    m_shape = &cropShapes().front();
    m_shapeButtons->buttons().constFirst()->setChecked(true);
    m_turn->setEnabled(false);
}

void CropPanel::takeShape(const CropShape &shape) {
    if (shape.kind == CropShape::Kind::WholePhoto) {
        chooseFreeFrame();
        Q_EMIT wholePhotoChosen();
        return;
    }
    m_shape = &shape;
    m_turn->setEnabled(shape.sides.width() != shape.sides.height());
    if (shape.kind == CropShape::Kind::Fixed) {
        const QSize photo = m_ctx.photo.picCanvas().size();
        m_upright = photo.height() > photo.width();
        Q_EMIT shapeChosen();
    }
}

void CropPanel::turnShape() {
    m_upright = !m_upright;
    Q_EMIT shapeChosen();
}

void CropPanel::prepare(Use use) {
    m_tip->writeSetting();
    const bool crop = use == Use::Crop;
    titleLabel()->setText(m_ctx.texts.text(crop ? "CropDescription" : "SelectBkgDescription"));
    m_cropNow->setVisible(crop);
    m_shapes->setVisible(crop);
    chooseFreeFrame();
    m_cropCutNow->setVisible(!crop);
    m_delInverse->setVisible(!crop);
}

} // namespace lumora
