// pnlCrop: the panel that the crop and the cut-out tool share.
#pragma once

#include "widgets/SlidingPanel.h"

namespace lumora {

struct AppContext;
class CropTip;
class PictureButton;

class CropPanel : public SlidingPanel {
    Q_OBJECT

  public:
    enum class Use { Crop, CutOut };

    /// The window's panel, created on first use.
    static CropPanel *of(QWidget *window, AppContext &ctx);

    /// Shows that tool's line and buttons.
    void prepare(Use use);

    PictureButton *cmdCropNow() const { return m_cropNow; }
    PictureButton *cmdCropCutNow() const { return m_cropCutNow; }
    PictureButton *cmdDelInverse() const { return m_delInverse; }
    CropTip *picTip2() const { return m_tip; }

  private:
    CropPanel(AppContext &ctx, QWidget *window);

    AppContext &m_ctx;
    CropTip *m_tip;
    PictureButton *m_cropNow;
    PictureButton *m_cropCutNow;
    PictureButton *m_delInverse;
    QLabel *m_hint;
};

} // namespace lumora
