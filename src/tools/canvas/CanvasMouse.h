// The one place where the photo's mouse-down, move and up are handled: it keeps the points, chooses the cursor and
// forwards to the current tool. Created by the main window for its canvas.
#pragma once

#include "session/ToolFlags.h"
#include "tools/canvas/EdgeScroller.h"
#include "tools/canvas/KeyboardPointer.h"
#include "view/PhotoView.h"

#include <QHash>
#include <QObject>
#include <QPoint>

namespace lumora {

class CanvasTool;

class CanvasMouse : public QObject {
    Q_OBJECT

  public:
    /// Handles the view's pointer and keys from now on. All three must outlive it.
    CanvasMouse(PhotoDocument &document, const ToolFlags &flags, PhotoView &view, QObject *parent = nullptr);

    /// Makes that tool the current one and ends the previous one; null is the Arrow tool. The pointer is reset; the
    /// tool's start may set another. A tool must exist as long as it is current.
    void setTool(CanvasTool *tool);
    CanvasTool *tool() const { return m_tool; }
    /// The canvas's pointer becomes that picture of picTarget, 1 to 6.
    void showTarget(int image);
    /// Rounds a point to whole pixels: to the nearest, halves to the right and down for any sign.
    static QPoint rounded(QPointF point);
    /// Whether the arrow keys lead the pointer now: its cursor is not where it is.
    bool isLedByKeys() const { return m_keyboard.isShown(); }
    /// Clears the selection.
    void clearMarked();

    /// Where the mouse went down and where it was last with the left button down: in the view's pixels and in the
    /// picture's, rounded to the nearest whole number and not cut to the photo. A mouse-move keeps SelEndPic up to date
    /// for the ellipse only.
    QPoint SelStart() const { return m_selStart; }
    QPoint SelEnd() const { return m_selEnd; }
    QPoint SelStartPic() const { return m_selStartPic; }
    QPoint SelEndPic() const { return m_selEndPic; }

  Q_SIGNALS:
    /// tool() is another one, or the same has started again.
    void toolChanged();
    /// Any mouse-move: hides picTip.
    void moved();
    /// A press has ended the tool, see CanvasTool::endsAt: as if cmdTool1 were clicked.
    void arrowWanted();

  private:
    void pointer(const PointerEvent &event);
    void mouseDown(const PointerEvent &event);
    void mouseMove(const PointerEvent &event);
    void mouseUp(const PointerEvent &event);
    void key(QKeyEvent &event);
    bool isForPointer(const QKeyEvent &event) const;
    void pointByKey(const QKeyEvent &event);
    void pressByKey();
    PointerEvent keyboardEvent(PointerEvent::Kind kind) const;
    void leaveKeyboard();
    void drag(const PointerEvent &event);
    void endDrag(const PointerEvent &event);

    PhotoDocument &m_document;
    const ToolFlags &m_flags;
    PhotoView &m_view;
    CanvasTool *m_tool = nullptr;
    EdgeScroller m_scroller;
    KeyboardPointer m_keyboard;
    bool m_pressedByKey = false;        ///< Enter was pressed and will release
    QHash<int, QCursor> m_cursors;      ///< for m_cursorsFor
    std::pair<qreal, int> m_cursorsFor; ///< device pixel ratio, pointerScale()
    QPoint m_selStart, m_selEnd, m_selStartPic, m_selEndPic;
    bool m_dragging = false; ///< the tool has received a press and no release
    PointerEvent m_last;     ///< of the drag
};

} // namespace lumora
