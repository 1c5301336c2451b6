// Interface of the tools that use the mouse on the photo. CanvasMouse holds the current one and forwards events to it.
#pragma once

#include "view/PhotoView.h"

#include <optional>

class QKeyEvent;
class QPainter;

namespace lumora {

class CanvasTool {
  public:
    virtual ~CanvasTool() = default;

    /// Called when the tool becomes the current one, and when it no longer is. end() also cancels a drag.
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
    /// Whether a press at that picture pixel ends the tool instead of being delivered to it.
    virtual bool endsAt(QPoint /*picture*/) const { return false; }
    /// The second press of a double click.
    virtual void doubleClick(const PointerEvent &at) { press(at); }
    /// Whether the press has taken or begun something that follows the pointer until the release. The keyboard's press
    /// is released with the next Enter then, else at once.
    virtual bool isDragging() const { return false; }
    /// Whether the current drag scrolls the photo at the view's edge; moves are then sent even when the mouse rests.
    virtual bool scrollsAtEdge() const { return false; }

    /// Whether the tool handles this key now, before the view and the window's shortcuts; and handling it.
    virtual bool wantsKey(const QKeyEvent &) const { return false; }
    virtual void keyPress(const QKeyEvent &) {}

    /// Whether the arrow keys that the tool does not want move a pointer, and Enter presses and releases there; and
    /// where it first appears, in the view's pixels, if not in the middle of what is seen of the photo.
    virtual bool hasKeyboardPointer() const { return false; }
    virtual std::optional<QPointF> keyboardStart() const { return {}; }

    /// Draws over the photo, in the view's coordinates.
    virtual void paint(QPainter &) {}
};

} // namespace lumora
