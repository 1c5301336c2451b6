// picTip2: the tip for the first crop, and its setting "Tips"/"Crop". Shown by the crop tool.
#pragma once

#include "widgets/Bubble.h"

#include <QTimer>

class QCheckBox;

namespace lumora {

struct AppContext;

class CropTip : public Bubble {
    Q_OBJECT

  public:
    CropTip(AppContext &ctx, QWidget *window);

    /// Starts tmrCrop, which shows the tip beside that button unless it was switched off for good.
    void showSoonAt(QWidget *button);
    /// Hides the tip, and cancels a pending one.
    void dismiss();
    /// "Tips"/"Crop" = txtCropTip.
    void writeSetting();

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    void tmrCrop();
    void switchOff(bool off);

    AppContext &m_ctx;
    QCheckBox *chkNoCropShow;
    QTimer m_timer;
    QWidget *m_button = nullptr;
};

} // namespace lumora
