#include "effects/EffectsPanel.h"

#include "imaging/Scale.h"
#include "session/AppContext.h"
#include "view/PhotoView.h"
#include "widgets/PictureButton.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QVBoxLayout>

namespace lumora {

namespace {

constexpr int stylePictureSide = 96; // pixels of the photo in a box, its longer side

/// The number in "keySFX1" to "keySFX12"; 0 for other keys.
int numberOf(const QString &key) {
    for (const SpecialEffect &effect : specialEffects()) {
        if (key == QStringLiteral("key") + QLatin1StringView(effect.text)) {
            return effect.number;
        }
    }
    return 0;
}

/// The panel's caption of an effect. The eleventh has its own default.
QString captionOf(const Texts &texts, int number) {
    const QString identifier = QStringLiteral("SFX%1").arg(number);
    return number == 11 ? texts.text(identifier, "Prespective") : texts.text(identifier);
}

} // namespace

EffectsPanel::EffectsPanel(AppContext &ctx, SpecialEffects &effects, PhotoView &view, QWidget *window)
    : SlidingPanel("panelSFX", "cmdpnlSFXExit", window), m_ctx(ctx), m_effects(effects), m_live(ctx, view) {
    titleLabel()->setObjectName("LN1");
    auto *row = new QHBoxLayout;
    row->setSpacing(16);
    for (const SpecialEffect &effect : specialEffects()) {
        EffectBox *box = EffectBox::make(effect.number, this);
        box->setValues(m_effects.advancedValues(effect.number));
        box->hide();
        connect(box, &EffectBox::valueChanged, this, [this, number = effect.number](int index, int value) {
            m_effects.setAdvancedValue(number, index, value);
            showLive();
        });
        m_boxes.at(static_cast<size_t>(effect.number - 1)) = box;
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
    connect(&effects, &SpecialEffects::selectionToolWanted, this, &EffectsPanel::selectionToolWanted);
    connect(&ctx.photo, &PhotoDocument::changed, this, [this](PhotoChanges what) {
        if (isOpen() && what.testAnyFlags(PhotoChange::Pixels | PhotoChange::Loaded)) {
            showPhoto();
        }
    });
}

void EffectsPanel::pick(const QString &key) {
    const int number = numberOf(key);
    if (number == 0) {
        return;
    }
    m_ctx.flags.RDMode = false;
    m_ctx.flags.SelectedSFX = number;
    Q_EMIT hideFloatingToolbars();
    m_ctx.flags.EffectChosen = true;
    if (m_ctx.fields.txtSFX == Switch::Off) {
        Q_EMIT applied(m_effects.ApplyBasicSFX(number));
    } else if (m_ctx.fields.txtSFX == Switch::On) {
        m_ctx.flags.SFXPanelOpening = true;
        m_ctx.flags.SFXPanelOpen = true;
        showBox(number);
        slideIn();
    }
}

void EffectsPanel::showBox(int number) {
    m_live.clear();
    for (const SpecialEffect &effect : specialEffects()) {
        m_boxes.at(static_cast<size_t>(effect.number - 1))->setVisible(effect.number == number);
    }
    titleLabel()->setText(captionOf(m_ctx.texts, number));
    showPhoto();
}

/// In the boxes that show what a style does to the photo.
void EffectsPanel::showPhoto() {
    for (EffectBox *box : m_boxes) {
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
    Q_EMIT applied(m_effects.ApplyAdvancedSFX(m_ctx.flags.SelectedSFX));
}

void EffectsPanel::close() {
    m_live.clear();
    m_ctx.flags.SelectionActive = false;
    Q_EMIT hideFloatingToolbars();
    const int number = m_ctx.flags.SelectedSFX;
    if (number == 6 || number == 8) {
        Q_EMIT selectionToolWanted();
    }
    m_effects.restoreAdvancedValues();
    for (const SpecialEffect &effect : specialEffects()) {
        m_boxes.at(static_cast<size_t>(effect.number - 1))->setValues(effect.advanced);
    }
    m_ctx.flags.SFXPanelOpen = false;
    PhotoSelection selection = m_ctx.photo.selection();
    selection.setDrawn(0);
    m_ctx.photo.setSelection(selection);
}

void EffectsPanel::showLive() {
    const SpecialEffect *effect = specialEffect(m_ctx.flags.SelectedSFX);
    if (!isOpen() || effect == nullptr) {
        return;
    }
    const EffectValues values = m_effects.advancedValues(effect->number);
    if (!canRun(*effect, values)) {
        m_live.clear();
        return;
    }
    const bool lasso = m_ctx.flags.SelectionActive && m_ctx.flags.SelectionKind == 3;
    m_live.show({.apply = [effect, lasso,
                           values](EffectEngine &engine, bool region,
                                   int factor) { return runEffect(*effect, !lasso, values, engine, region, factor); },
                 .wholePhoto = effect->wholePhoto,
                 .atFullSize = effect->looksAtNeighbours});
}

void EffectsPanel::moveEvent(QMoveEvent *event) {
    SlidingPanel::moveEvent(event);
    m_ctx.flags.PanelAnimating = m_ctx.flags.PanelAnimating || isSliding();
}

} // namespace lumora
