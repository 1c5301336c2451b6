// A drag that another program ends above a window.
#pragma once

#include <QCoreApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QWidget>
#include <QWindow>

namespace lumora::test {

/// As the window system sends it; false when the window refuses it. The window has been shown.
inline bool dropOn(const QWidget &window, const QMimeData &data) {
    const QPoint at = window.rect().center();
    QDragEnterEvent enter(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(window.windowHandle(), &enter);
    if (enter.isAccepted()) {
        QDropEvent dropped(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(window.windowHandle(), &dropped);
    }
    return enter.isAccepted();
}

} // namespace lumora::test
