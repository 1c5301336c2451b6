// Flip and rotate by 90 degrees at once (the first items of FT2), and free rotation by hand.
#pragma once

#include "tools/EditorTool.h"
#include "tools/rotate/GridOverlay.h"
#include "tools/rotate/RotateByHand.h"

namespace lumora {

class RotateTool : public EditorTool {
    Q_OBJECT

  public:
    /// All arguments must outlive it.
    RotateTool(AppContext &ctx, PhotoView &view, CanvasMouse &mouse, FloatingToolbar *FT2, QObject *parent);

    /// Shows previews of the first three items on their buttons. Without a photo their icons stay.
    void CreateTHMRorationSFX() const;
    void makeSmallPictures() override { CreateTHMRorationSFX(); }
    void barOpens() override { CreateTHMRorationSFX(); }

    /// The items of FT2: "keyRotate1" to "keyRotate3" and "keyRotate5" turn the photo at once, "keyRotate4" starts free
    /// rotation; any other key does nothing.
    bool open(const QString &key) override;
    bool excludesOthers() const override { return FreeRotateActive(); }
    void accept() override { m_byHand.accept(); }
    /// Rotate by 90 degrees anti-clockwise, flip vertically, rotate by 90 degrees clockwise, mirror left to right: each
    /// one undo step. When the engine fails, the photo keeps its pixels. Does nothing without a photo.
    void RotatePic90();
    void RotatePic180();
    void RotatePic270();
    void mirrorPic();

    /// True from "Free Rotation" until another tool is current.
    bool FreeRotateActive() const { return m_byHand.isActive(); }
    bool hasMouse() const override;
    const RotateByHand &byHand() const { return m_byHand; }
    const GridOverlay &grid() const { return m_grid; }
    /// Ends free rotation; a running drag is discarded.
    void close() override;

  private:
    using Transform = QImage (*)(const QImage &picture);
    void rotatePic(Transform transform);
    void dropSelection();
    void startFreeRotation();

    AppContext &m_ctx;
    CanvasMouse &m_mouse;
    FloatingToolbar *m_FT2;
    GridOverlay m_grid; ///< before m_byHand, whose handle is drawn over the grid
    RotateByHand m_byHand;
};

} // namespace lumora
