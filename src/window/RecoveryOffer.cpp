#include "window/RecoveryOffer.h"

#include "dialogs/frmPrompt.h"
#include "document/Recovery.h"
#include "session/AppContext.h"
#include "session/PlainWords.h"

#include <QTimer>
#include <QWidget>
#include <system_error>
#include <utility>

namespace lumora {

namespace {
constexpr int patience = 200; // milliseconds between two checks whether the window is visible
}

RecoveryOffer::RecoveryOffer(AppContext &ctx, Recovery &recovery, QWidget *owner)
    : QObject(owner), m_ctx(ctx), m_recovery(recovery), m_owner(owner) {
    if (m_recovery.parentFolder().isEmpty()) {
        return;
    }
    try {
        m_thread = std::jthread([this] { search(); });
    } catch (const std::system_error &) {
        return; // the copies are kept for the next start
    }
}

RecoveryOffer::~RecoveryOffer() = default;

void RecoveryOffer::search() {
    m_left = RecoveryFolder::findNewest(m_recovery.parentFolder(), m_photo);
    if (m_left != nullptr) {
        QMetaObject::invokeMethod(
            this, [this] { m_ctx.tasks.whenIdle(this, [this] { ask(); }); }, Qt::QueuedConnection);
    }
}

void RecoveryOffer::ask() {
    if (!m_owner->isVisible()) {
        QTimer::singleShot(patience, this, [this] { m_ctx.tasks.whenIdle(this, [this] { ask(); }); });
        return;
    }
    Q_EMIT asking();
    switch (lumora::ask(m_ctx, PromptKind::Recover, m_owner, m_photo)) {
    case Answer::Yes:
        open();
        break;
    case Answer::No:
        m_left->clear();
        break;
    case Answer::Cancelled:
        break;
    }
    m_left.reset();
    m_photo = QImage();
}

void RecoveryOffer::open() {
    const bool before = m_ctx.photo.PhotoModified();
    Q_EMIT canvasWanted();
    // Marked unsaved before it is loaded: the copy of a saved photo would be removed.
    m_ctx.photo.setPhotoModified(true);
    PictureRead read;
    read.picture = m_photo;
    const PictureError error = m_ctx.photo.openPicture(read, PhotoDocument::OpenRoute::TmrLoadPhoto);
    if (error != PictureError::None) {
        m_ctx.photo.setPhotoModified(before);
        Q_EMIT failed(plainWords(m_ctx.texts, error));
        return;
    }
    m_ctx.photo.CurrentFileName.clear();
    m_recovery.adopt(std::move(m_left));
    Q_EMIT opened();
}

} // namespace lumora
