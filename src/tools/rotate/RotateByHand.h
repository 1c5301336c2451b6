// Free rotation: the photo turns under the hand that drags it by its handle (or anywhere else), by the arrow keys, or
// until a line that was drawn on it is straight. RotateTool starts it.
#pragma once

#include "tools/canvas/CanvasTool.h"
#include "tools/rotate/HorizonLine.h"
#include "tools/rotate/RotationPreview.h"

#include <QObject>
#include <QTimer>
#include <optional>
#include <vector>

namespace lumora {

class RotateControls;
struct AppContext;

/// Every rotation starts from the photo as it was when free rotation began, so that repeated rotations do not add up
/// blur or size. A finished drag is one undo step, and so are arrow keys pressed one after the other. Undo and redo
/// restore their angle. The white corners are cut off at the end where that is ticked, which belongs to the last step
/// of turning. Angles are degrees clockwise, -180 to 180.
class RotateByHand : public QObject, public CanvasTool {
    Q_OBJECT

  public:
    static constexpr int settleTime = 400; ///< milliseconds after the last arrow key until the photo is turned

    /// Both outlive it.
    RotateByHand(AppContext &ctx, PhotoView &view, QObject *parent = nullptr);

    bool isActive() const { return m_active; }
    /// The current angle of the photo, including the preview.
    double degrees() const { return m_degrees; }
    /// The centre of the handle and of the rotation, in the view's pixels.
    QPointF handle() const;
    QPointF pivot() const;
    /// What is left of the turned photo when its white corners are cut off, in pixels of the turned photo. The whole
    /// of it where that is not ticked.
    QRect keptPart() const;

    /// "Done": what is tried is kept, the corners are cut off where that is ticked, and it ends.
    void accept();

    void start() override;
    void end() override;
    void press(const PointerEvent &at) override;
    void move(const PointerEvent &at) override;
    void release(const PointerEvent &at) override;
    bool isDragging() const override {
        return m_trying == Trying::Grabbed || m_trying == Trying::Drag || m_trying == Trying::Line;
    }
    /// The arrow keys turn by one degree; Esc cancels the drag, lifts the straighten button or ends free rotation;
    /// Enter is "Done".
    bool wantsKey(const QKeyEvent &key) const override;
    void keyPress(const QKeyEvent &key) override;
    void paint(QPainter &painter) override;

  Q_SIGNALS:
    void ended();
    /// "Done", Esc or Enter: the user is done.
    void endWanted();
    /// The photo could not be rotated because memory allocation failed.
    void failed();
    /// What the user can do now, or should do instead: the identifier of a text, and whether all is well.
    void hint(const char *text, bool good);

  private:
    enum class Trying { Nothing, Grabbed, Drag, Line, Keys };

    void photoChanged(PhotoChanges what);
    void takeAsUnturned();
    bool isTurnedBy(double degrees) const;
    double angleAt(QPointF view) const;
    void turnTo(double degrees, Trying how);
    void finish();
    void drop();
    bool cutCorners();
    bool straightens() const;
    void straighten();
    void turnWithPointer(const PointerEvent &at);
    bool isHeldByMouse() const;
    void keepInPlace(QPointF pivot);
    void paintHandle(QPainter &painter) const;
    void paintAngle(QPainter &painter) const;
    void showHand();

    AppContext &m_ctx;
    PhotoView &m_view;
    RotationPreview m_preview;
    bool m_active = false;
    bool m_finishing = false;
    Trying m_trying = Trying::Nothing;
    QImage m_unturned;
    std::vector<double> m_turns; ///< of the undo steps since, the first is 0
    size_t m_turn = 0;           ///< the one that the photo shows
    double m_degrees = 0;
    double m_grabbedAt = 0; ///< the pointer's angle when the drag began
    QPointF m_pressedAt, m_pointer;
    std::optional<HorizonLine> m_line; ///< while it is drawn
    QTimer m_settle;
    RotateControls *m_controls;
};

} // namespace lumora
