#include "window/FileDrop.h"

#include "base/FileName.h"

#include <QApplication>
#include <QDropEvent>
#include <QMimeData>
#include <QUrl>
#include <QWidget>

namespace lumora {

namespace {

/// The first file in the data; empty when there is none.
QString droppedFile(const QMimeData &data) {
    for (const QUrl &url : data.urls()) {
        if (url.isLocalFile()) {
            return localFileOf(url);
        }
    }
    return {};
}

} // namespace

FileDrop::FileDrop(QWidget *window) : QObject(window) {
    window->setAcceptDrops(true);
    window->installEventFilter(this);
}

bool FileDrop::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() != QEvent::DragEnter && event->type() != QEvent::Drop) {
        return QObject::eventFilter(watched, event);
    }
    auto *drag = static_cast<QDropEvent *>(event);
    const QString path = droppedFile(*drag->mimeData());
    // The window system delivers drags even to a window blocked by a modal dialog.
    if (path.isEmpty() || QApplication::activeModalWidget() != nullptr) {
        drag->ignore();
        return true;
    }
    drag->acceptProposedAction();
    if (event->type() == QEvent::Drop) {
        Q_EMIT dropped(path);
    }
    return true;
}

} // namespace lumora
