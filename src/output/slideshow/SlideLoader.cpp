#include "output/slideshow/SlideLoader.h"

#include "base/OwnThread.h"
#include "base/TaskControl.h"
#include "imaging/Picture.h"
#include "imaging/PictureFile.h"

#include <QCoreApplication>
#include <QDir>
#include <QPainter>
#include <QPointer>

namespace lumora {

namespace {

/// The picture on black.
QImage opaque(const QImage &picture) {
    if (picture.isNull() || !picture.hasAlphaChannel()) {
        return picture;
    }
    QImage result(picture.size(), QImage::Format_RGB32);
    if (!result.isNull()) {
        result.fill(Qt::black);
        QPainter(&result).drawImage(0, 0, picture);
    }
    return result;
}

Slide firstThatCanBeShown(const QDir &folder, const QStringList &names, int first, QSize room,
                          const TaskControl &control) {
    for (qsizetype i = 0; i < names.size() && !control.isCancelled(); ++i) {
        const int index = static_cast<int>((first + i) % names.size());
        // Buffers of pictures that were shown, and of whole decodes of several sizes, would add up.
        releaseKeptBuffers();
        const QImage picture = opaque(readFitted(folder.filePath(names[index]), room).picture);
        releaseKeptBuffers();
        if (!picture.isNull()) {
            return {index, picture};
        }
    }
    return {};
}

} // namespace

void SlideLoader::find(const QString &folder, const QStringList &names, int first, QSize room) {
    drop();
    const auto control = std::make_shared<TaskControl>();
    m_control = control;
    // The job holds only a weak pointer: the show may end without waiting for a slow file.
    besides([guard = QPointer(this), control, folder, names, first, room] {
        const TaskControl::Scope scope(control.get());
        const Slide slide = firstThatCanBeShown(QDir(folder), names, first, room, *control);
        QMetaObject::invokeMethod(
            QCoreApplication::instance(),
            [guard, control, slide] {
                if (guard) {
                    guard->finish(control, slide);
                }
            },
            Qt::QueuedConnection);
    });
}

void SlideLoader::drop() {
    if (m_control) {
        m_control->cancel();
        m_control = nullptr;
    }
}

void SlideLoader::finish(const std::shared_ptr<TaskControl> &control, const Slide &slide) {
    if (control == m_control) {
        m_control = nullptr;
        Q_EMIT found(slide);
    }
}

} // namespace lumora
