#include "view/Thumbnails.h"

#include "base/OwnThread.h"
#include "document/DiscardedPhotos.h"
#include "imaging/PictureFile.h"
#include "imaging/Scale.h"

#include <QCoreApplication>
#include <QPointer>

namespace lumora {

namespace {

constexpr int atOnce = 2; // files decoded side by side: enough to keep ahead of the eye, few enough to leave a core

/// Of a picture file, or of a photo that was thrown away.
QImage thumbnailOf(const QString &path, int longerSide) {
    if (!DiscardedPhotos::isName(path)) {
        return readThumbnail(path, longerSide).picture;
    }
    const QImage whole = DiscardedPhotos::read(path).picture;
    const QSize size = whole.size().scaled(QSize(longerSide, longerSide), Qt::KeepAspectRatio).expandedTo({1, 1});
    return whole.isNull() || size.width() >= whole.width() ? whole
                                                           : scaleByAveraging(whole, size.width(), size.height());
}

} // namespace

Thumbnails::Thumbnails(int longerSide, QObject *parent) : QObject(parent), m_longerSide(longerSide) {}

void Thumbnails::want(const QStringList &paths) {
    m_waiting.clear();
    for (const QString &path : paths) {
        if (!m_underWay.contains(path)) {
            m_waiting += path;
        }
    }
    beginNext();
}

void Thumbnails::cancel() {
    ++m_round;
    m_waiting.clear();
    m_underWay.clear();
}

void Thumbnails::beginNext() {
    while (m_underWay.size() < atOnce && !m_waiting.isEmpty()) {
        const QString path = m_waiting.takeFirst();
        m_underWay += path;
        // The job holds only a weak pointer: a list may be closed without waiting for a slow file.
        besides([guard = QPointer(this), round = m_round, path, side = m_longerSide] {
            const QImage thumbnail = thumbnailOf(path, side);
            QMetaObject::invokeMethod(
                QCoreApplication::instance(),
                [guard, round, path, thumbnail] {
                    if (guard) {
                        guard->finish(round, path, thumbnail);
                    }
                },
                Qt::QueuedConnection);
        });
    }
}

void Thumbnails::finish(int round, const QString &path, const QImage &thumbnail) {
    if (round == m_round) {
        m_underWay -= path;
        Q_EMIT made(path, thumbnail);
    }
    beginNext();
}

} // namespace lumora
