// What every tool that works with the mouse on the photo is to the mouse dispatch. One file pair a tool; CanvasMouse
// holds the current one and hands on to it.
#pragma once

#include "view/PhotoView.h"

class QKeyEvent;
class QPainter;

namespace lumora {

class CanvasTool {
  public:
    virtual ~CanvasTool() = default;

    /// The tool has become the current one; it is no longer. end() leaves nothing half done, a drag neither.
    virtual void start() {}
    virtual void end() {}

    /// The left button goes down, the pointer moves (with or without a button), the left button goes up. A press is
    /// followed by one release or by end(), also when the window loses the mouse in between. Picture pixels may lie
    /// outside the photo.
    virtual void press(const PointerEvent &) {}
    virtual void move(const PointerEvent &) {}
    virtual void release(const PointerEvent &) {}
    /// The left button has gone up at this pixel, which may be outside the photo. After release(), and also where the
    /// press was not this tool's.
    virtual void clicked(QPoint /*pixel*/) {}
    /// Whether a press at that picture pixel ends the tool instead of reaching it.
    virtual bool endsAt(QPoint /*picture*/) const { return false; }
    /// The second press of a double click.
    virtual void doubleClick(const PointerEvent &at) { press(at); }
    /// Whether the drag that is under way scrolls the photo at the view's edge; moves follow, also when the mouse
    /// rests.
    virtual bool scrollsAtEdge() const { return false; }

    /// Whether the tool uses this key now, before the view and the window's shortcuts do; and using it.
    virtual bool wantsKey(const QKeyEvent &) const { return false; }
    virtual void keyPress(const QKeyEvent &) {}

    /// Draws over the photo, in the view's coordinates.
    virtual void paint(QPainter &) {}
};

} // namespace lumora
