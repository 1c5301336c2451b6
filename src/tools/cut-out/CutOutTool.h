// Cut out: a freehand line around something in the photo, and either everything outside or everything inside of it
// becomes transparent. Shares its panel with the crop tool.
#pragma once

#include "tools/canvas/PanelTool.h"
#include "tools/select/SelectionTool.h"

#include <functional>

class QImage;

namespace lumora {

class CropPanel;

class CutOutTool : public PanelTool {
    Q_OBJECT

  public:
    CutOutTool(AppContext &ctx, PhotoView &view, CanvasMouse &mouse, SelectionOutline &outline, QWidget *window);

    /// Lasso and panel; while it is open it starts again.
    bool open(const QString &key = {}) override;
    bool excludesOthers() const override { return isAtWork(); }
    /// Keeps what is marked.
    void accept() override;

    /// Deletes the background: the photo is cropped to the bounding rectangle of the selection (of any selection tool),
    /// and the rest of the rectangle becomes transparent. One undo step. Returns false and changes nothing without a
    /// selection on the photo (the tip is then requested) and when memory allocation fails (which is reported).
    bool DeleteSelection();
    /// Deletes the selection: it becomes transparent, and the photo keeps its size. Otherwise the same.
    bool InverseDelete();

    void end() override;
    void press(const PointerEvent &at) override;
    void move(const PointerEvent &at) override;
    void release(const PointerEvent &at) override;
    bool isDragging() const override { return m_lasso.isDragging(); }
    bool scrollsAtEdge() const override;
    bool hasKeyboardPointer() const override { return true; }
    /// Esc clears the selection or cancels the drag; then it ends the tool.
    void keyPress(const QKeyEvent &key) override;

  private:
    using Cut = std::function<QImage(const QImage &photo, const PhotoSelection &marked)>;
    bool run(const Cut &cut);

    AppContext &m_ctx;
    PhotoView &m_view;
    CropPanel *m_panel;
    SelectionTool m_lasso; ///< draws the line
};

} // namespace lumora
