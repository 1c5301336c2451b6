#include "effects/EffectsPanel.h"

#include "imaging/Scale.h"
#include "session/AppContext.h"
#include "session/PlainWords.h"
#include "view/PhotoView.h"
#include "widgets/PictureButton.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace lumora {

namespace {

constexpr int stylePictureSide = 96; // pixels of the photo in a box, its longer side

} // namespace

EffectsPanel::EffectsPanel(AppContext &ctx, SpecialEffects &effects, PhotoView &view, QWidget *window)
    : SlidingPanel("panelSFX", "cmdpnlSFXExit", window), m_ctx(ctx), m_effects(effects), m_live(ctx, view) {
    titleLabel()->setObjectName("LN1");
    addCompareButton();
    auto *row = new QHBoxLayout;
    row->setSpacing(16);
    for (const Effect &effect : ::lumora::effects(EffectGroup::Special)) {
        EffectBox *box = EffectBox::make(effect, this);
        box->setValues(m_effects.advancedValues(effect.number));
        box->hide();
        connect(box, &EffectBox::valueChanged, this, [this, number = effect.number](int index, int value) {
            m_effects.setAdvancedValue(number, index, value);
            showLive();
        });
        m_boxes[effect.number] = box;
        row->addWidget(box, 1);
    }
    auto *cmdApplySFXNow = new PictureButton("ok", PictureButton::CaptionPlace::Beside, this);
    cmdApplySFXNow->setObjectName("cmdApplySFXNow");
    cmdApplySFXNow->setLook(PictureButton::Look::Raised);
    cmdApplySFXNow->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed); // its caption is never cut
    row->addWidget(cmdApplySFXNow, 0, Qt::AlignVCenter);
    body()->addLayout(row);
    connect(cmdApplySFXNow, &QAbstractButton::clicked, this, &EffectsPanel::apply);
    connect(this, &SlidingPanel::opened, this, &EffectsPanel::showLive);
    connect(this, &SlidingPanel::closed, this, &EffectsPanel::close);
    connect(&ctx.photo, &PhotoDocument::changed, this, [this](PhotoChanges what) {
        if (isOpen() && what.testAnyFlags(PhotoChange::Pixels | PhotoChange::Loaded)) {
            showPhoto();
        }
    });
}

void EffectsPanel::pick(const QString &key) {
    const Effect *effect = findEffect(EffectGroup::Special, key);
    if (effect == nullptr) {
        return;
    }
    m_picked = effect->number;
    if (m_ctx.fields.txtSFX == Switch::Off) {
        Q_EMIT applied(m_effects.ApplyBasicSFX(m_picked));
    } else if (m_ctx.fields.txtSFX == Switch::On) {
        showBox(*effect);
        slideIn();
    } else {
        Q_EMIT message(oddSetting(m_ctx.texts, Setting::AdvancedEffects));
    }
}

void EffectsPanel::showBox(const Effect &effect) {
    m_live.clear();
    for (const auto &[number, box] : m_boxes) {
        box->setVisible(number == effect.number);
    }
    const QString name = effect.name;
    titleLabel()->setText(effect.panelCaption != nullptr ? m_ctx.texts.text(name, effect.panelCaption)
                                                         : m_ctx.texts.text(name));
    showPhoto();
}

/// The previews in the boxes that show styles on the photo.
void EffectsPanel::showPhoto() {
    for (const auto &[number, box] : m_boxes) {
        if (!box->isHidden() && box->showsPhoto()) {
            const QImage &photo = m_ctx.photo.picCanvas();
            const int side = qRound(stylePictureSide * devicePixelRatioF());
            const QSize size = photo.size().scaled(side, side, Qt::KeepAspectRatio).expandedTo({1, 1});
            box->setPhoto(scaled(photo, size.width(), size.height()));
        }
    }
}

void EffectsPanel::apply() {
    m_live.clear();
    Q_EMIT applied(m_effects.ApplyAdvancedSFX(m_picked));
}

void EffectsPanel::close() {
    m_live.clear();
    m_ctx.flags.endSelection();
    m_effects.restoreAdvancedValues();
    for (const auto &[number, box] : m_boxes) {
        box->setValues(m_effects.advancedValues(number));
    }
    PhotoSelection selection = m_ctx.photo.selection();
    selection.setDrawn(0);
    m_ctx.photo.setSelection(selection);
}

void EffectsPanel::showLive() {
    const Effect *effect = findEffect(EffectGroup::Special, m_picked);
    if (!isOpen() || effect == nullptr) {
        return;
    }
    const EffectValues values = m_effects.advancedValues(effect->number);
    if (!canRun(*effect, values)) {
        m_live.clear();
        return;
    }
    const bool lasso = m_ctx.flags.SelectionActive() && m_ctx.flags.SelectionKind() == PhotoSelection::Shape::Lasso;
    const double unit = effectUnit(m_ctx.photo.picCanvas().size());
    m_live.show({.operation = [effect, lasso, values,
                               unit](int factor) { return operationOf(*effect, !lasso, values, unit / factor); },
                 .wholePhoto = effect->wholePhoto,
                 .coarsest = effect->coarsestLive > 0 ? effect->coarsestLive * unit : 16});
}

} // namespace lumora
