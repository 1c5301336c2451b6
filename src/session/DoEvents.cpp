#include "session/DoEvents.h"

#include <QCoreApplication>
#include <QEvent>
#include <QEventLoop>
#include <QWindow>

namespace lumora {

namespace {

int depth = 0; // the user interface has one thread, and so has this

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

/// In front of every other filter of the application. Excluding user input from the event loop is not enough: drags
/// come past it, and so does what the panel needs.
class Gate : public QObject {
  public:
    explicit Gate(const QObject *panel) : m_panel(panel) { QCoreApplication::instance()->installEventFilter(this); }

    bool eventFilter(QObject *watched, QEvent *event) override {
        if (isDrag(event->type())) {
            event->ignore();
            return true;
        }
        // A window hands on to the widget under the pointer or with the keyboard; that one decides.
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
