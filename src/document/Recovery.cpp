#include "document/Recovery.h"

#include "base/OwnThread.h"
#include "document/RecoveryWriter.h"

#include <QGuiApplication>
#include <utility>

namespace lumora {

Recovery::Recovery(PhotoDocument &photo, const QString &parentFolder, QObject *parent)
    : QObject(parent), m_photo(photo), m_parentFolder(parentFolder),
      m_writer(std::make_unique<RecoveryWriter>(parentFolder)) {
    if (parentFolder.isEmpty()) {
        return;
    }
    connect(&photo, &PhotoDocument::changed, this, &Recovery::photoChanged);
    connect(qApp, &QCoreApplication::aboutToQuit, this, [this] {
        keepNow();
        m_writer->setStaysBehind(m_photo.isOnlyHere());
    });
    // The session may end this program at any time after it has asked.
    connect(qGuiApp, &QGuiApplication::commitDataRequest, this, &Recovery::keepNow, Qt::DirectConnection);
}

Recovery::~Recovery() {
    if (m_writer->isDiscarding()) { // who leaves does not wait for it; the application does, at its end
        besides([writer = std::shared_ptr<RecoveryWriter>(std::move(m_writer))]() mutable { writer.reset(); });
    }
}

void Recovery::photoChanged(PhotoChanges what) {
    if (!(what & (PhotoChanges(PhotoChange::Pixels) | PhotoChange::Modified))) {
        return;
    }
    if (!m_photo.isOnlyHere()) {
        m_writer->want({});
    } else if (!m_photo.picCanvas().isNull()) {
        m_writer->want({m_photo.picCanvas(), m_photo.metadata()});
    }
}

void Recovery::keepNow() {
    if (!m_parentFolder.isEmpty() && m_photo.isOnlyHere() && !m_photo.picCanvas().isNull()) {
        m_writer->keepNow({m_photo.picCanvas(), m_photo.metadata()});
    }
}

void Recovery::adopt(std::unique_ptr<RecoveryFolder> folder) {
    m_writer->adopt(std::move(folder), m_photo.picCanvas().cacheKey());
}

void Recovery::keepDiscarded(const KeptPhoto &photo) {
    if (!m_parentFolder.isEmpty()) {
        m_writer->discard(photo);
    }
}

void Recovery::broughtBack(const QString &path) {
    m_writer->noteDiscarded(m_photo.picCanvas().cacheKey(), path);
}

} // namespace lumora
