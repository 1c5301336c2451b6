#include "session/DoEvents.h"

#include <QCoreApplication>
#include <QEvent>
#include <QEventLoop>
#include <QWindow>

namespace lumora {

namespace {

int depth = 0; // used by the GUI thread only

bool isInput(QEvent::Type type) {
    switch (type) {
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::Shortcut:
    case QEvent::ContextMenu:
    case QEvent::InputMethod:
    case QEvent::NativeGesture:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
    case QEvent::TabletPress:
    case QEvent::TabletMove:
    case QEvent::TabletRelease:
        return true;
    default:
        return false;
    }
}

bool isDrag(QEvent::Type type) {
    return type == QEvent::DragEnter || type == QEvent::DragMove || type == QEvent::Drop;
}

bool isIn(const QObject *panel, const QObject *object) {
    while (panel != nullptr && object != nullptr && object != panel) {
        object = object->parent();
    }
    return panel != nullptr && object == panel;
}

/// Installed before every other event filter of the application. Excluding user input from the event loop is not
/// enough: drags are still delivered, and so is input for the panel.
class Gate : public QObject {
  public:
    explicit Gate(const QObject *panel) : m_panel(panel) { QCoreApplication::instance()->installEventFilter(this); }

    bool eventFilter(QObject *watched, QEvent *event) override {
        if (isDrag(event->type())) {
            event->ignore();
            return true;
        }
        // A window forwards to the widget under the pointer or with the focus; that widget decides.
        const bool handsOn = m_panel != nullptr && qobject_cast<QWindow *>(watched) != nullptr;
        return isInput(event->type()) && !handsOn && !isIn(m_panel, watched);
    }

  private:
    const QObject *m_panel;
};

} // namespace

void DoEvents(const QObject *panel) {
    const Gate gate(panel);
    ++depth;
    QCoreApplication::processEvents(panel == nullptr ? QEventLoop::ExcludeUserInputEvents : QEventLoop::AllEvents);
    --depth;
}

bool isInDoEvents() {
    return depth > 0;
}

} // namespace lumora
