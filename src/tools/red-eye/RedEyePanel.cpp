#include "tools/red-eye/RedEyePanel.h"

#include "effects/EffectBoxes.h"
#include "tools/red-eye/RedEyeCircle.h"
#include "widgets/PictureButton.h"
#include "widgets/Theme.h"

#include <QButtonGroup>
#include <QHBoxLayout>
#include <QStyle>
#include <QVBoxLayout>

namespace lumora {

namespace {

constexpr int widest = 80; // pixels of the photo
constexpr int usual = 20;
constexpr int boxSide = 112; // pixels: the widest circle is 107
constexpr int edge = 24;
constexpr int gap = 20;
constexpr int foot = 16;
constexpr int shinePicture = 48;
constexpr int narrowestShine = 72;
constexpr EffectSlider slider{"sldRD", "lblRD", 1, widest};

struct ShineRow {
    const char *icon;
    std::optional<EyeShine> shine;
    QColor bright, dark; ///< of the picture
};

/// optEye1, optEye2 ...
const ShineRow shineRows[] = {
    {"eye-red", std::nullopt, {232, 48, 43}, {122, 12, 26}},
    {"eye-orange", EyeShine::Orange, {255, 168, 60}, {180, 83, 10}},
    {"eye-pink", EyeShine::Pink, {255, 158, 196}, {192, 74, 120}},
    {"eye-green", EyeShine::Green, {150, 240, 130}, {40, 140, 70}},
    {"eye-white", EyeShine::White, {246, 250, 255}, {176, 190, 204}},
};

} // namespace

RedEyePanel::RedEyePanel(QWidget *window)
    : SlidingPanel("pnlRedEye", "cmdExitPnlRedEye", window), m_radius(usual), m_shines(new QButtonGroup(this)),
      picRedEye(new RedEyeCircle(this)) {
    titleLabel()->setObjectName("LN4");
    addCompareButton();
    auto *sldRD = new CaptionedSlider(slider, this);
    sldRD->setValue(usual);
    auto *row = new QHBoxLayout;
    row->setSpacing(gap);
    row->addWidget(sldRD, 1);
    buildShines(row);
    body()->addLayout(row);
    // The picture is beside title and slider, so that the panel stays low.
    const int beside = edge + boxSide + gap;
    const bool mirrored = isRightToLeft();
    layout()->setContentsMargins(mirrored ? foot : beside, shadowMargin + 8, mirrored ? beside : foot, foot);
    picRedEye->setRadius(usual);
    setMinimumHeight(shadowMargin + 8 + boxSide + foot);
    connect(sldRD, &CaptionedSlider::changed, this, [this](int radius) {
        m_radius = radius;
        picRedEye->setRadius(radius);
        Q_EMIT radiusChanged(radius);
    });
}

void RedEyePanel::buildShines(QHBoxLayout *row) {
    auto *strip = new QHBoxLayout;
    strip->setSpacing(4);
    row->addLayout(strip);
    int number = 0;
    for (const ShineRow &each : shineRows) {
        auto *button = new PictureButton(each.icon, PictureButton::CaptionPlace::Below, this);
        button->setObjectName(QStringLiteral("optEye%1").arg(++number));
        button->setPictureSize({shinePicture, shinePicture});
        button->setCheckable(true);
        button->setMinimumWidth(narrowestShine);
        button->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
        m_shines->addButton(button, number - 1);
        strip->addWidget(button);
    }
    m_shines->button(0)->setChecked(true);
    showShine();
    connect(m_shines, &QButtonGroup::idClicked, this, [this] {
        showShine();
        Q_EMIT shineChanged();
    });
}

std::optional<EyeShine> RedEyePanel::shine() const {
    return shineRows[m_shines->checkedId()].shine;
}

void RedEyePanel::showShine() {
    const ShineRow &row = shineRows[m_shines->checkedId()];
    picRedEye->setColours(row.bright, row.dark);
}

void RedEyePanel::resizeEvent(QResizeEvent *event) {
    SlidingPanel::resizeEvent(event);
    const QRect box(edge, height() - foot - boxSide, boxSide, boxSide);
    picRedEye->setGeometry(QStyle::visualRect(layoutDirection(), rect(), box));
}

} // namespace lumora
