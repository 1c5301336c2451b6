#include "tools/colour-focus/ColourFocusPanel.h"

#include "effects/EffectBoxes.h"
#include "tools/colour-focus/ColourFocusSwatch.h"
#include "widgets/FittingLabel.h"
#include "widgets/PictureButton.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QLabel>

namespace lumora {

namespace {

constexpr int levels[] = {10, 25, 45, 70}; // degrees of hue
constexpr int usualStrength = 2;
constexpr int captionWidth = 76;
constexpr int narrowestPicture = 64; // pixels, in a narrow window
constexpr EffectSlider slider{"sldColourFocusLevel", "lblColourFocusLevel", 5, 90};

} // namespace

ColourFocusPanel::ColourFocusPanel(QWidget *window)
    : SlidingPanel("pnlColourFocus", "cmdExitPnlColourFocus", window), picChosenColour(new ColourFocusSwatch(this)),
      m_strengths(new QButtonGroup(this)), m_slider(new CaptionedSlider(slider, this)) {
    // The sentence includes what the title would say, so it replaces the title.
    titleLabel()->setObjectName("LN6");
    addCompareButton();
    titleLabel()->hide();
    auto *lblAQFX = new FittingLabel(this);
    lblAQFX->setObjectName("lblAQFX");
    lblAQFX->setFont(titleLabel()->font());
    static_cast<QHBoxLayout *>(layout()->itemAt(0)->layout())->insertWidget(0, lblAQFX, 1);

    auto *caption = new QLabel(this);
    caption->setObjectName("lblAQFXChosenColour");
    caption->setWordWrap(true);
    caption->setFixedWidth(captionWidth);
    auto *row = new QHBoxLayout;
    row->setSpacing(12);
    row->addWidget(picChosenColour);
    row->addWidget(caption);
    body()->addLayout(row);
    buildStrengths();
    row->addWidget(m_slider, 1);
    row->addStretch();
    auto *apply = new PictureButton("ok", PictureButton::CaptionPlace::Beside, this);
    apply->setObjectName("cmdApplyCMNow");
    apply->setLook(PictureButton::Look::Raised);
    apply->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed); // its caption is never cut
    row->addWidget(apply);
    connect(apply, &QAbstractButton::clicked, this, &ColourFocusPanel::applyWanted);
    connect(m_slider, &CaptionedSlider::changed, this, &ColourFocusPanel::setLevel);
    resetLevel();
}

void ColourFocusPanel::buildStrengths() {
    auto *strip = new QHBoxLayout;
    strip->setSpacing(4);
    for (int strength = 1; strength <= strengths; ++strength) {
        auto *button = new PictureButton("tool11", PictureButton::CaptionPlace::None, this);
        button->setObjectName(QStringLiteral("picCM%1").arg(strength));
        button->setPictureSize(pictureSize);
        button->setMinimumWidth(narrowestPicture);
        button->setCheckable(true);
        m_strengths->addButton(button, strength);
        strip->addWidget(button);
    }
    static_cast<QHBoxLayout *>(body()->itemAt(0)->layout())->addLayout(strip);
    connect(m_strengths, &QButtonGroup::idClicked, this, [this](int strength) { setLevel(levelOf(strength)); });
}

int ColourFocusPanel::levelOf(int strength) {
    return levels[strength - 1];
}

void ColourFocusPanel::setLevel(int level) {
    if (level == m_level) {
        return;
    }
    m_level = level;
    m_slider->setValue(level);
    m_strengths->setExclusive(false); // none is chosen between the strengths
    for (int strength = 1; strength <= strengths; ++strength) {
        m_strengths->button(strength)->setChecked(levelOf(strength) == level);
    }
    m_strengths->setExclusive(true);
    Q_EMIT levelChanged();
}

void ColourFocusPanel::resetLevel() {
    setLevel(levelOf(usualStrength));
}

void ColourFocusPanel::setColour(const QColor &colour) {
    picChosenColour->setColour(colour);
}

void ColourFocusPanel::setPicture(int strength, const QImage &picture) {
    static_cast<PictureButton *>(m_strengths->button(strength))->setPicture(QPixmap::fromImage(picture));
}

} // namespace lumora
