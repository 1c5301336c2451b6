#include "tools/canvas/PanelTool.h"

#include "tools/canvas/CanvasMouse.h"
#include "widgets/SlidingPanel.h"

#include <QKeyEvent>
#include <QLabel>

namespace lumora {

PanelTool::PanelTool(CanvasMouse &mouse, SlidingPanel *panel, QObject *parent)
    : EditorTool(parent), m_mouse(mouse), m_panel(panel) {
    connect(panel, &SlidingPanel::left, this, &PanelTool::leave);
}

bool PanelTool::isAtWork() const {
    return m_mouse.tool() == this;
}

void PanelTool::begin() {
    m_mouse.setTool(this);
    m_panel->setAccessibleName(m_panel->titleLabel()->text());
    m_panel->slideIn();
}

void PanelTool::close() {
    if (isAtWork()) {
        m_mouse.setTool(nullptr);
    }
}

void PanelTool::end() {
    m_panel->slideOut();
}

void PanelTool::leave() {
    if (isAtWork()) {
        close();
        Q_EMIT finished();
    }
}

bool PanelTool::wantsKey(const QKeyEvent &key) const {
    return key.key() == Qt::Key_Escape && key.modifiers() == Qt::NoModifier;
}

void PanelTool::keyPress(const QKeyEvent &) {
    leave();
}

} // namespace lumora
