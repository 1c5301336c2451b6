#include "window/RecoveryOffer.h"

#include "dialogs/frmPrompt.h"
#include "document/DiscardedPhotos.h"
#include "document/Recovery.h"
#include "session/AppContext.h"
#include "session/PlainWords.h"
#include "widgets/MessageBox.h"
#include "widgets/Theme.h"

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
        m_thread = std::jthread([this, folder = m_recovery.parentFolder()] { search(folder); });
    } catch (const std::system_error &) {
        return; // the copies are kept for the next start
    }
}

RecoveryOffer::~RecoveryOffer() = default;

void RecoveryOffer::search(const QString &folder) {
    DiscardedPhotos(folder).sweep(); // what was thrown away a week ago
    m_left = RecoveryFolder::findNewest(folder, m_photo, &m_damaged);
    const auto next = m_left != nullptr ? &RecoveryOffer::ask : &RecoveryOffer::tellDamaged;
    if (m_left != nullptr || m_damaged > 0) {
        QMetaObject::invokeMethod(
            this, [this, next] { whenVisible(next); }, Qt::QueuedConnection);
    }
}

void RecoveryOffer::whenVisible(void (RecoveryOffer::*what)()) {
    m_ctx.tasks.whenIdle(this, [this, what] {
        if (m_owner->isVisible()) {
            (this->*what)();
        } else {
            QTimer::singleShot(patience, this, [this, what] { whenVisible(what); });
        }
    });
}

void RecoveryOffer::tellDamaged() {
    if (std::exchange(m_damaged, 0) == 0) {
        return;
    }
    auto *box = new MessageBox("msgCopyDamaged", m_ctx.texts.text("ApplicationName"),
                               m_ctx.texts.text("MsgCopyDamaged").arg(m_recovery.parentFolder()), m_owner);
    box->setPicture("hand");
    box->showAlone();
}

void RecoveryOffer::ask() {
    Q_EMIT asking();
    switch (lumora::ask(m_ctx, PromptKind::Recover, m_owner, m_photo.picture)) {
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
    m_photo = {};
    tellDamaged();
}

void RecoveryOffer::open() {
    Q_EMIT canvasWanted();
    PictureRead read;
    read.picture = m_photo.picture;
    read.metadata = m_photo.metadata;
    const PictureError error = m_ctx.photo.openPicture(read, PhotoDocument::OpenRoute::Unsaved);
    if (error != PictureError::None) {
        Q_EMIT failed(plainWords(m_ctx.texts, error));
        return;
    }
    m_ctx.photo.CurrentFileName.clear();
    m_recovery.adopt(std::move(m_left));
    Q_EMIT opened();
}

} // namespace lumora
