#include "widgets/WidgetAt.h"

#include <QApplication>
#include <QWidget>
#include <QWindow>

namespace lumora {

QWidget *widgetOf(const QWindow *window) {
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (window != nullptr && widget->windowHandle() == window) {
            return widget;
        }
    }
    return nullptr;
}

QWidget *widgetAt(const QWindow *window, QPoint place) {
    QWidget *top = widgetOf(window);
    QWidget *child = top == nullptr ? nullptr : top->childAt(place);
    return child == nullptr ? top : child;
}

} // namespace lumora
