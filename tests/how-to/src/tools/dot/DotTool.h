// A red dot at each click, as long as its panel is up.
#pragma once

#include "tools/canvas/PanelTool.h"

namespace lumora {

class DotTool : public PanelTool {
    Q_OBJECT

  public:
    DotTool(AppContext &ctx, PhotoView &view, CanvasMouse &mouse, QWidget *window);

    bool open(const QString &key) override;
    /// Paints the pixel, one undo step.
    void clicked(QPoint pixel) override;

  private:
    AppContext &m_ctx;
};

} // namespace lumora
