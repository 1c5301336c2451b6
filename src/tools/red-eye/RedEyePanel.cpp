#include "tools/red-eye/RedEyePanel.h"

#include "effects/EffectBoxes.h"
#include "tools/red-eye/RedEyeCircle.h"
#include "widgets/Theme.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QStyle>

namespace lumora {

namespace {

constexpr int widest = 80; // pixels of the photo
constexpr int usual = 20;
constexpr int boxSide = 112; // pixels: the widest circle is 107
constexpr int edge = 24;
constexpr int gap = 20;
constexpr int foot = 16;
constexpr EffectSlider slider{"sldRD", "lblRD", 1, widest};

} // namespace

RedEyePanel::RedEyePanel(QWidget *window)
    : SlidingPanel("pnlRedEye", "cmdExitPnlRedEye", window), m_radius(usual), picRedEye(new RedEyeCircle(this)) {
    titleLabel()->setObjectName("LN4");
    addCompareButton();
    auto *sldRD = new CaptionedSlider(slider, this);
    sldRD->setValue(usual);
    auto *hint = new QLabel(this);
    hint->setObjectName("lblRedEye");
    auto *row = new QHBoxLayout;
    row->setSpacing(gap);
    row->addWidget(sldRD, 1);
    row->addWidget(hint);
    row->addStretch();
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

void RedEyePanel::resizeEvent(QResizeEvent *event) {
    SlidingPanel::resizeEvent(event);
    const QRect box(edge, height() - foot - boxSide, boxSide, boxSide);
    picRedEye->setGeometry(QStyle::visualRect(layoutDirection(), rect(), box));
}

} // namespace lumora
