// Free rotation: the photo turns under the hand that drags it by its handle (or anywhere else), or by the arrow keys.
// RotateTool starts it.
#pragma once

#include "tools/canvas/CanvasTool.h"
#include "tools/rotate/RotationPreview.h"

#include <QObject>
#include <QTimer>
#include <vector>

namespace lumora {

class DoneButton;
struct AppContext;

/// Every rotation starts from the photo as it was when free rotation began, so that repeated rotations do not add up
/// blur or size. A finished drag is one undo step, and so are arrow keys pressed one after the other. Undo and redo
/// restore their angle. Angles are degrees clockwise, -180 to 180.
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

    void start() override;
    void end() override;
    void press(const PointerEvent &at) override;
    void move(const PointerEvent &at) override;
    void release(const PointerEvent &at) override;
    /// The arrow keys turn by one degree; Esc cancels the drag or ends free rotation; Enter ends it too.
    bool wantsKey(const QKeyEvent &key) const override;
    void keyPress(const QKeyEvent &key) override;
    void paint(QPainter &painter) override;

  Q_SIGNALS:
    void ended();
    /// The button, Esc or Enter: the user is done.
    void endWanted();
    /// The photo could not be rotated because memory allocation failed.
    void failed();

  private:
    enum class Trying { Nothing, Grabbed, Drag, Keys };

    void photoChanged(PhotoChanges what);
    void takeAsUnturned();
    bool isTurnedBy(double degrees) const;
    double angleAt(QPointF view) const;
    void turnTo(double degrees, Trying how);
    void finish();
    void drop();
    void keepInPlace(QPointF pivot);
    void paintHandle(QPainter &painter) const;
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
    QTimer m_settle;
    DoneButton *cmdRotateDone;
};

} // namespace lumora
