#include "tools/crop/CropTip.h"

#include "session/AppContext.h"
#include "widgets/Tick.h"
#include "widgets/WindowTexts.h"

#include <QCheckBox>
#include <QEvent>
#include <QLabel>
#include <QVBoxLayout>

namespace lumora {

namespace {
constexpr int delay = 300; // milliseconds: the user has released the frame by then
}

CropTip::CropTip(AppContext &ctx, QWidget *window)
    : Bubble("picTip2", window), m_ctx(ctx), chkNoCropShow(new Tick(this)) {
    label()->setObjectName("lblCropWarning");
    showText(ctx.texts, *label(), "Tip1");
    label()->setCursor(Qt::PointingHandCursor);
    label()->installEventFilter(this);
    chkNoCropShow->setObjectName("chkNoCropShow");
    showText(ctx.texts, *chkNoCropShow, "TipChkBox1");
    body()->addWidget(chkNoCropShow);
    layInRow(); // above the button it would cover the panel's title
    m_timer.setSingleShot(true);
    m_timer.setInterval(delay);
    connect(&m_timer, &QTimer::timeout, this, &CropTip::tmrCrop);
    connect(chkNoCropShow, &QCheckBox::clicked, this, &CropTip::switchOff);
}

void CropTip::showSoonAt(QWidget *button) {
    m_button = button;
    m_timer.start();
}

void CropTip::dismiss() {
    m_timer.stop();
    hide();
}

void CropTip::writeSetting() {
    m_ctx.settings.write<Setting::CropTip, Writer::CropTip>(m_ctx.fields.txtCropTip);
}

void CropTip::tmrCrop() {
    if (m_ctx.fields.txtCropTip != Switch::Other) {
        const bool off = m_ctx.fields.txtCropTip == Switch::Off;
        chkNoCropShow->setChecked(off);
        if (!off && m_button->isVisible()) {
            pointAt(m_button);
        }
    }
}

void CropTip::switchOff(bool off) {
    m_ctx.fields.txtCropTip = off ? Switch::Off : Switch::On;
    if (off) {
        dismiss();
        writeSetting();
    }
}

bool CropTip::eventFilter(QObject *watched, QEvent *event) {
    if (watched == label() && event->type() == QEvent::MouseButtonRelease) {
        dismiss();
        writeSetting();
    }
    return Bubble::eventFilter(watched, event);
}

} // namespace lumora
