// pnlCrop: the panel that the crop and the cut-out tool share.
#pragma once

#include "widgets/SlidingPanel.h"

class QButtonGroup;

namespace lumora {

struct AppContext;
struct CropShape;
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

    /// The proportions that the frame keeps; empty while it may have any. As a fixed shape of cropShapes, or turned.
    QSize sides() const;
    /// The free frame again.
    void chooseFreeFrame();

    PictureButton *cmdCropNow() const { return m_cropNow; }
    PictureButton *cmdCropCutNow() const { return m_cropCutNow; }
    PictureButton *cmdDelInverse() const { return m_delInverse; }
    CropTip *picTip2() const { return m_tip; }

  Q_SIGNALS:
    /// The user has chosen a fixed shape, has turned it, or has chosen the whole photo.
    void shapeChosen();
    void wholePhotoChosen();

  private:
    void addShapes();
    void takeShape(const CropShape &shape);
    void turnShape();
    CropPanel(AppContext &ctx, QWidget *window);

    AppContext &m_ctx;
    CropTip *m_tip;
    PictureButton *m_cropNow;
    PictureButton *m_cropCutNow;
    PictureButton *m_delInverse;
    QWidget *m_shapes;
    QButtonGroup *m_shapeButtons;
    PictureButton *m_turn;
    const CropShape *m_shape; ///< of the frame
    bool m_upright = false;   ///< a fixed shape stands on its shorter side
};

} // namespace lumora
