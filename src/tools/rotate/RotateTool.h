// Turning the photo: the quarter turns and the flip of FT2 at once, free rotation by hand. The main window hands on the
// clicks of FT2.
#pragma once

#include "tools/rotate/GridOverlay.h"
#include "tools/rotate/RotateByHand.h"

#include <QObject>

namespace lumora {

class CanvasMouse;
class FloatingToolbar;

class RotateTool : public QObject {
    Q_OBJECT

  public:
    /// All outlive it.
    RotateTool(AppContext &ctx, PhotoView &view, CanvasMouse &mouse, QObject *parent);

    /// Puts what the first three items would do to the photo on their buttons. Without a photo their icons stay.
    void CreateTHMRorationSFX(FloatingToolbar &FT2) const;

    /// An item of FT2 was picked: "keyRotate1" to "keyRotate3" turn the photo at once, "keyRotate4" starts free
    /// rotation; any other key only closes the bar.
    void choose(const QString &key);
    /// A quarter turn anti-clockwise, top to bottom, a quarter turn clockwise: each one undo step. Where the engine
    /// refuses, the photo keeps its pixels. Nothing happens without a photo.
    void RotatePic90();
    void RotatePic180();
    void RotatePic270();

    /// True from "Free Rotation" until another tool is current.
    bool FreeRotateActive() const { return m_byHand.isActive(); } ///< in the shared flags too
    const RotateByHand &byHand() const { return m_byHand; }
    const GridOverlay &grid() const { return m_grid; }
    /// Ends free rotation; a drag that is under way is dropped.
    void close();

  Q_SIGNALS:
    void hideFloatingToolbars();
    /// Free rotation has started (false) or ended (true): cmdTool2 to cmdTool11 and cmdCropCut.
    void toolsEnabled(bool enabled);
    /// The Arrow tool is to be current: a turn is done, or free rotation is to end.
    void arrowWanted();
    /// For the status line.
    void message(const QString &text, bool good);

  private:
    using Transform = QImage (*)(const QImage &picture);
    void rotatePic(Transform transform);
    void clearOtherTools();
    void startFreeRotation();

    AppContext &m_ctx;
    CanvasMouse &m_mouse;
    GridOverlay m_grid; ///< before the hand, whose handle lies over the grid
    RotateByHand m_byHand;
};

} // namespace lumora
