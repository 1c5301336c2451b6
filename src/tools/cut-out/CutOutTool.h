// Cut out: a line drawn round something in the photo with a free hand, and either everything outside or everything
// inside of it becomes see-through. Shares its panel with the crop tool.
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

    /// Deletes the background: the photo is cut down to the rectangle of what is marked (by any of the selection
    /// tools), and what lies in it beside the mark becomes transparent. One undo step. False, and nothing changed, when
    /// nothing of the photo is marked, for which the tip is wanted, and when memory is refused, which is told.
    bool DeleteSelection();
    /// Deletes what is marked: it becomes transparent, and the photo keeps its size. The same otherwise.
    bool InverseDelete();

    void end() override;
    void press(const PointerEvent &at) override;
    void move(const PointerEvent &at) override;
    void release(const PointerEvent &at) override;
    bool scrollsAtEdge() const override;
    /// Esc clears what is marked or being marked; then it leaves.
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
