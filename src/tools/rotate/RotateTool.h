// Turning the photo: the quarter turns and the flip of FT2 at once, free rotation by hand.
#pragma once

#include "tools/EditorTool.h"
#include "tools/rotate/GridOverlay.h"
#include "tools/rotate/RotateByHand.h"

namespace lumora {

class RotateTool : public EditorTool {
    Q_OBJECT

  public:
    /// All outlive it.
    RotateTool(AppContext &ctx, PhotoView &view, CanvasMouse &mouse, FloatingToolbar *FT2, QObject *parent);

    /// Puts what the first three items would do to the photo on their buttons. Without a photo their icons stay.
    void CreateTHMRorationSFX() const;
    void makeSmallPictures() override { CreateTHMRorationSFX(); }
    void barOpens() override { CreateTHMRorationSFX(); }

    /// The items of FT2: "keyRotate1" to "keyRotate3" turn the photo at once, "keyRotate4" starts free rotation; any
    /// other key does nothing.
    bool open(const QString &key) override;
    bool excludesOthers() const override { return FreeRotateActive(); }
    /// A quarter turn anti-clockwise, top to bottom, a quarter turn clockwise: each one undo step. Where the engine
    /// refuses, the photo keeps its pixels. Nothing happens without a photo.
    void RotatePic90();
    void RotatePic180();
    void RotatePic270();

    /// True from "Free Rotation" until another tool is current.
    bool FreeRotateActive() const { return m_byHand.isActive(); }
    const RotateByHand &byHand() const { return m_byHand; }
    const GridOverlay &grid() const { return m_grid; }
    /// Ends free rotation; a drag that is under way is dropped.
    void close() override;

  private:
    using Transform = QImage (*)(const QImage &picture);
    void rotatePic(Transform transform);
    void dropSelection();
    void startFreeRotation();

    AppContext &m_ctx;
    CanvasMouse &m_mouse;
    FloatingToolbar *m_FT2;
    GridOverlay m_grid; ///< before the hand, whose handle lies over the grid
    RotateByHand m_byHand;
};

} // namespace lumora
