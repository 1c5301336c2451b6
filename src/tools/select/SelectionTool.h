// The selection tools: rectangle, ellipse and lasso, the items of FT1, marked on the photo with the mouse. What is
// marked is the document's.
#pragma once

#include "tools/EditorTool.h"
#include "tools/canvas/CanvasTool.h"

#include <vector>

namespace lumora {

class SelectionTool : public EditorTool, public CanvasTool {
    Q_OBJECT

  public:
    SelectionTool(AppContext &ctx, CanvasMouse &mouse, SelectionOutline &outline, QObject *parent = nullptr);

    /// Makes the tool of that key of FT1 current: "keySqr", "keyCircle" or "keyLasso"; any other key does nothing.
    bool open(const QString &key) override;

    void end() override { cancel(); }
    /// Starts a mark of the shape that SelectionKind says, while SelectionActive; what was marked is no longer. A click
    /// without a drag marks nothing.
    void press(const PointerEvent &at) override;
    void move(const PointerEvent &at) override;
    void release(const PointerEvent &at) override;
    bool scrollsAtEdge() const override { return m_dragged; }
    /// Esc clears what is marked or is being marked.
    bool wantsKey(const QKeyEvent &key) const override;
    void keyPress(const QKeyEvent &key) override;

  private:
    void cancel();
    void mark(const PhotoSelection &selection);
    void markBox(const PointerEvent &at);
    void addLassoPoint(QPointF picture);
    QPoint inPhoto(QPoint picture) const;

    AppContext &m_ctx;
    PhotoDocument &m_document;
    CanvasMouse &m_mouse;
    SelectionOutline &m_outline;
    bool m_pressed = false; ///< the left button is down and what it draws is wanted
    bool m_dragged = false; ///< the pointer has left the place of the click
    QPointF m_pressedAt;    ///< the view's pixels
    std::vector<PicturePoint> m_lasso;
};

} // namespace lumora
