// The selection tools: rectangle, ellipse and lasso, the items of FT1, made on the photo with the mouse. The document
// owns the selection.
#pragma once

#include "tools/EditorTool.h"
#include "tools/canvas/CanvasTool.h"

#include <vector>

namespace lumora {

class SelectionTool : public EditorTool, public CanvasTool {
    Q_OBJECT

  public:
    SelectionTool(AppContext &ctx, CanvasMouse &mouse, SelectionOutline &outline, QObject *parent = nullptr);

    /// The key that marks the photo's usedSelection once more with the tool of its shape.
    static constexpr const char *keyAgain = "keyAgain";

    /// Makes the tool of that key of FT1 current: "keySqr", "keyCircle" or "keyLasso"; or keyAgain. Any other key does
    /// nothing, nor does keyAgain without a used selection.
    bool open(const QString &key) override;
    bool hasMouse() const override;

    void end() override { cancel(); }
    /// Starts a selection of the shape in SelectionKind and sets SelectionActive, which an effect clears when it has
    /// changed what was marked; clears the previous selection. A click without a drag selects
    /// nothing; a drag with Shift makes a square or a circle.
    void press(const PointerEvent &at) override;
    void move(const PointerEvent &at) override;
    void release(const PointerEvent &at) override;
    bool isDragging() const override { return m_pressed; }
    bool scrollsAtEdge() const override { return m_dragged; }
    bool hasKeyboardPointer() const override { return true; }
    /// Esc clears the selection or cancels the drag.
    bool wantsKey(const QKeyEvent &key) const override;
    void keyPress(const QKeyEvent &key) override;

  private:
    void cancel();
    void mark(const PhotoSelection &selection);
    void markAgain(const PhotoSelection &before);
    void markBox(const PointerEvent &at);
    void addLassoPoint(QPointF picture);
    QPoint inPhoto(QPoint picture) const;

    AppContext &m_ctx;
    PhotoDocument &m_document;
    CanvasMouse &m_mouse;
    SelectionOutline &m_outline;
    bool m_pressed = false; ///< the left button is down and draws a selection
    bool m_dragged = false; ///< the pointer has left the place of the click
    QPointF m_pressedAt;    ///< the view's pixels
    std::vector<PicturePoint> m_lasso;
};

} // namespace lumora
