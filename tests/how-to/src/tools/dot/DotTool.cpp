#include "tools/dot/DotTool.h"

#include "session/AppContext.h"
#include "widgets/SlidingPanel.h"

namespace lumora {

DotTool::DotTool(AppContext &ctx, PhotoView &, CanvasMouse &mouse, QWidget *window)
    : PanelTool(mouse, new SlidingPanel("pnlDot", "cmdExitPnlDot", window), window), m_ctx(ctx) {}

bool DotTool::open(const QString &) {
    begin();
    return true;
}

void DotTool::clicked(QPoint pixel) {
    QImage next = m_ctx.photo.picCanvas();
    next.setPixelColor(pixel, Qt::red);
    m_ctx.photo.changePhoto(next);
}

} // namespace lumora
