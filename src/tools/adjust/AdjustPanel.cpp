#include "tools/adjust/AdjustPanel.h"

#include "effects/EffectTable.h"
#include "tools/adjust/AdjustSlider.h"
#include "widgets/PictureButton.h"
#include "widgets/Theme.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>

namespace lumora {

namespace {

constexpr int iconSize = 40;
constexpr int widestSlider = 560;

} // namespace

AdjustPanel::AdjustPanel(QWidget *window)
    : SlidingPanel("pnlColmgr", "cmdExitPnlColmgr", window), m_icon(new QLabel(this)), m_value(new QLabel(this)),
      picAJP1(new PictureButton(this)), picAJP2(new PictureButton(this)),
      cmdApplyBCS(new PictureButton("ok", PictureButton::CaptionPlace::Beside, this)) {
    titleLabel()->setObjectName("LN3");
    addCompareButton();
    auto *controls = new QHBoxLayout;
    controls->setSpacing(16);
    picAJP1->setObjectName("picAJP1");
    picAJP2->setObjectName("picAJP2");
    for (PictureButton *picture : {picAJP2, picAJP1}) {
        picture->setPictureSize(pictureSize);
        controls->addWidget(picture);
        connect(picture, &QAbstractButton::pressed, this, [this] { Q_EMIT compared(true); });
        connect(picture, &QAbstractButton::released, this, [this] { Q_EMIT compared(false); });
    }
    controls->addWidget(m_icon);
    for (const Effect &adjustment : effects(EffectGroup::Adjustment)) {
        const EffectSlider &row = adjustment.sliders.front();
        auto *slider = new AdjustSlider(row.name, row.least, row.most, adjustment.advanced.front(), this);
        slider->setMaximumWidth(widestSlider);
        connect(slider, &QSlider::valueChanged, this, [this, slider] {
            showValue(*slider);
            Q_EMIT valueChanged();
        });
        m_sliders.push_back(slider);
        controls->addWidget(slider, 1);
    }
    QFont bold = m_value->font();
    bold.setBold(true);
    bold.setPointSizeF(14);
    m_value->setFont(bold);
    m_value->setAlignment(Qt::AlignCenter);
    m_value->setMinimumWidth(QFontMetrics(bold).horizontalAdvance("+100") + 8);
    controls->addWidget(m_value);
    controls->addStretch();
    cmdApplyBCS->setObjectName("cmdApplyBCS");
    cmdApplyBCS->setLook(PictureButton::Look::Raised);
    cmdApplyBCS->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed); // its caption is never cut
    controls->addWidget(cmdApplyBCS);
    body()->addLayout(controls);
    connect(cmdApplyBCS, &QAbstractButton::clicked, this, &AdjustPanel::applyWanted);
}

void AdjustPanel::showKind(int kind, const QString &title) {
    const Effect &adjustment = *findEffect(EffectGroup::Adjustment, kind);
    const int first = adjustment.advanced.front();
    titleLabel()->setText(title);
    m_icon->setPixmap(iconPixmap(adjustment.icon, iconSize, devicePixelRatioF()));
    picAJP1->show();
    picAJP2->setVisible(first != 0);
    for (AdjustSlider *each : m_sliders) {
        each->setVisible(each == slider(kind));
        each->setAccessibleName(title);
    }
    slider(kind)->setValue(first);
    showValue(*slider(kind));
}

int AdjustPanel::value(int kind) const {
    return slider(kind)->value();
}

void AdjustPanel::resetValue(int kind) {
    slider(kind)->setValue(0);
}

void AdjustPanel::setPictures(const QImage &before, const QImage &after) {
    picAJP2->setPicture(QPixmap::fromImage(before));
    picAJP1->setPicture(QPixmap::fromImage(after));
}

void AdjustPanel::showValue(const AdjustSlider &slider) {
    const int value = slider.value();
    m_value->setText((value > 0 && slider.minimum() < 0 ? QStringLiteral("+") : QString()) + locale().toString(value));
}

} // namespace lumora
