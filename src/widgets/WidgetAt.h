// From the window system's windows to widgets.
#pragma once

class QPoint;
class QWidget;
class QWindow;

namespace lumora {

/// The widget that is that window; null for none.
QWidget *widgetOf(const QWindow *window);

/// The innermost widget of that window there; null outside.
QWidget *widgetAt(const QWindow *window, QPoint place);

} // namespace lumora
