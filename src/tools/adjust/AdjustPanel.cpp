#include "tools/adjust/AdjustPanel.h"

#include "tools/adjust/AdjustSlider.h"
#include "widgets/PictureButton.h"
#include "widgets/Theme.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QLocale>

namespace lumora {

namespace {

constexpr int most = 100;
constexpr int iconSize = 40;
constexpr int widestSlider = 560;
const char *const icons[] = {"brightness", "contrast", "saturation"};

} // namespace

AdjustPanel::AdjustPanel(QWidget *window)
    : SlidingPanel("pnlColmgr", "cmdExitPnlColmgr", window), m_icon(new QLabel(this)), m_value(new QLabel(this)),
      picAJP1(new PictureButton(this)), picAJP2(new PictureButton(this)),
      cmdApplyBCS(new PictureButton("ok", PictureButton::CaptionPlace::Beside, this)) {
    titleLabel()->setObjectName("LN3");
    addCompareButton();
    auto *row = new QHBoxLayout;
    row->setSpacing(16);
    picAJP1->setObjectName("picAJP1");
    picAJP2->setObjectName("picAJP2");
    for (PictureButton *picture : {picAJP1, picAJP2}) {
        picture->setPictureSize(pictureSize);
        row->addWidget(picture);
    }
    row->addWidget(m_icon);
    for (int i = 0; i < 3; ++i) {
        auto *slider = new AdjustSlider(QStringLiteral("sldSFX9_%1").arg(i + 1), most, this);
        slider->setMaximumWidth(widestSlider);
        connect(slider, &QSlider::valueChanged, this, [this](int value) {
            showValue(value);
            Q_EMIT valueChanged();
        });
        m_sliders.at(size_t(i)) = slider;
        row->addWidget(slider, 1);
    }
    QFont bold = m_value->font();
    bold.setBold(true);
    bold.setPointSizeF(14);
    m_value->setFont(bold);
    m_value->setAlignment(Qt::AlignCenter);
    m_value->setMinimumWidth(QFontMetrics(bold).horizontalAdvance("+100") + 8);
    row->addWidget(m_value);
    row->addStretch();
    cmdApplyBCS->setObjectName("cmdApplyBCS");
    cmdApplyBCS->setLook(PictureButton::Look::Raised);
    cmdApplyBCS->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed); // its caption is never cut
    row->addWidget(cmdApplyBCS);
    body()->addLayout(row);
    connect(cmdApplyBCS, &QAbstractButton::clicked, this, &AdjustPanel::applyWanted);
    connect(picAJP1, &QAbstractButton::pressed, this, [this] { Q_EMIT compared(true); });
    connect(picAJP1, &QAbstractButton::released, this, [this] { Q_EMIT compared(false); });
}

void AdjustPanel::showKind(int kind, const QString &title) {
    titleLabel()->setText(title);
    m_icon->setPixmap(iconPixmap(icons[kind - 1], iconSize, devicePixelRatioF()));
    picAJP1->show();
    picAJP2->hide();
    for (int i = 0; i < 3; ++i) {
        AdjustSlider *slider = m_sliders.at(size_t(i));
        slider->setVisible(i + 1 == kind);
        slider->setAccessibleName(title);
    }
    resetValue(kind);
    showValue(0);
}

int AdjustPanel::value(int kind) const {
    return m_sliders.at(size_t(kind) - 1)->value();
}

void AdjustPanel::resetValue(int kind) {
    m_sliders.at(size_t(kind) - 1)->setValue(0);
}

void AdjustPanel::setPictures(const QImage &before, const QImage &after) {
    picAJP2->setPicture(QPixmap::fromImage(before));
    picAJP1->setPicture(QPixmap::fromImage(after));
}

void AdjustPanel::showValue(int value) {
    m_value->setText((value > 0 ? QStringLiteral("+") : QString()) + locale().toString(value));
}

} // namespace lumora
