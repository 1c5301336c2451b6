#include "window/PhotoCommands.h"

#include "base/FileName.h"
#include "dialogs/frmPrompt.h"
#include "dialogs/frmSimpleOpen.h"
#include "dialogs/frmSimpleSave.h"
#include "document/DiscardedPhotos.h"
#include "session/AppContext.h"
#include "session/DoEvents.h"
#include "session/LoadSettings.h"
#include "session/MyPictures.h"
#include "session/PlainWords.h"
#include "window/Clipboard.h"
#include "window/SystemDialogs.h"

#include <QFileInfo>
#include <utility>

namespace lumora {

PhotoCommands::PhotoCommands(AppContext &ctx, QWidget *owner) : QObject(owner), m_ctx(ctx), m_owner(owner) {
    // One-shot timers: they run the command after the modal dialog that started them has closed, and never inside a
    // task.
    tmrLoadPhoto.setSingleShot(true);
    tmrSavePhoto.setSingleShot(true);
    connect(&tmrLoadPhoto, &QTimer::timeout, this,
            [this] { m_ctx.tasks.whenIdle(this, [this] { loadSimplePath(); }); });
    connect(&tmrSavePhoto, &QTimer::timeout, this,
            [this] { m_ctx.tasks.whenIdle(this, [this] { saveSimplePath(); }); });
}

void PhotoCommands::open() {
    if (m_ctx.photo.PhotoModified()) {
        SaveBeforeOpen();
    } else {
        OpenPhotos();
    }
}

void PhotoCommands::save() {
    SavePhotos();
}

void PhotoCommands::openDropped(const QString &path) {
    if (QFileInfo(path).isDir()) {
        Q_EMIT failed(m_ctx.texts.text("StatusFolder"));
        return;
    }
    const auto load = [this, path] {
        Q_EMIT firstToolWanted();
        Q_EMIT toolsEnabled();
        loadInto(readInBackground(path), Route::LoadPhoto);
    };
    if (m_ctx.photo.PhotoModified()) {
        saveBefore(load);
    } else {
        load();
    }
}

void PhotoCommands::openAtStart(const PictureRead &read) {
    loadInto(read, Route::LoadPhoto);
}

// --- Open -----------------------------------------------------------------------------------------------------------

void PhotoCommands::OpenPhotos() {
    const DialogStyle style = m_ctx.fields.txtDlgs;
    if (saysOddDialogs()) {
        return;
    }
    Q_EMIT firstToolWanted();
    if (style == DialogStyle::System) {
        LoadPhoto();
    } else {
        OpenMySimplePhoto();
    }
    Q_EMIT buttonsToRefresh();
}

void PhotoCommands::OpenPhotos2() {
    if (saysOddDialogs()) {
        return;
    }
    if (m_ctx.fields.txtDlgs == DialogStyle::Own) {
        OpenMySimplePhoto2();
        Q_EMIT firstToolWanted();
    } else if (m_ctx.fields.txtDlgs == DialogStyle::System) {
        LoadPhoto();
        Q_EMIT firstToolWanted();
    }
}

void PhotoCommands::LoadPhoto() {
    Q_EMIT toolsEnabled();
    const QString path = askForPhotoToOpen(m_ctx, m_owner);
    if (!path.isEmpty()) {
        loadInto(readInBackground(path), Route::LoadPhoto);
    } else {
        refreshTools();
    }
}

void PhotoCommands::OpenMySimplePhoto() {
    openSimple("frmSimpleOpen");
}

void PhotoCommands::OpenMySimplePhoto2() {
    openSimple("frmSimpleOpen2");
}

void PhotoCommands::openSimple(const QString &form) {
    frmSimpleOpen dialog(m_ctx, form, m_owner);
    switch (dialog.ask()) {
    case frmSimpleOpen::Result::Open:
        tmrLoadPhoto.start(0);
        break;
    case frmSimpleOpen::Result::More:
        LoadPhoto();
        break;
    case frmSimpleOpen::Result::Cancelled:
        break;
    }
}

void PhotoCommands::loadSimplePath() {
    DoEvents();
    const QString path = m_ctx.fields.txtSimplePath;
    if (DiscardedPhotos(m_ctx.installation.recoveryFolder).holds(path)) {
        bringBack(path);
    } else {
        loadInto(readInBackground(path), Route::TmrLoadPhoto);
    }
    Q_EMIT buttonsToRefresh();
}

/// A photo that was thrown away: unsaved, as it was before.
void PhotoCommands::bringBack(const QString &path) {
    PictureRead read;
    m_ctx.tasks.run([&] { read = DiscardedPhotos::read(path); });
    if (loadInto(read, Route::Unsaved)) {
        Q_EMIT broughtBack(path);
    }
}

PictureRead PhotoCommands::readInBackground(const QString &path) {
    PictureRead read;
    m_ctx.tasks.run([&] { read = readPicture(path); }, Stopping::Offered);
    return read;
}

bool PhotoCommands::loadInto(const PictureRead &read, Route route) {
    if (read.error == PictureError::Cancelled) {
        say(read.error); // cancelled by the user, not failed: no undo point is made
        refreshTools();
        return false;
    }
    Q_EMIT canvasWanted();
    const PictureError error = m_ctx.photo.openPicture(read, route);
    refreshTools();
    if (error != PictureError::None) {
        say(error);
        return false;
    }
    Q_EMIT opened();
    if (!read.reason.isEmpty()) {
        Q_EMIT failed(m_ctx.texts.text("StatusNotWhole"));
    }
    return true;
}

/// They were enabled before it was known whether there would be a photo.
void PhotoCommands::refreshTools() {
    if (!m_ctx.photo.PhotoLoaded()) {
        Q_EMIT toolsDisabled();
    }
}

// --- Save -----------------------------------------------------------------------------------------------------------

void PhotoCommands::SavePhotos() {
    if (!m_ctx.photo.PhotoLoaded() || saysOddDialogs()) {
        return;
    }
    if (m_ctx.fields.txtDlgs == DialogStyle::Own) {
        SaveMySimplePhoto();
    } else if (m_ctx.fields.txtDlgs == DialogStyle::System) {
        SavePhoto();
    }
}

bool PhotoCommands::SavePhoto() {
    const QString path = askWhereToSave(m_ctx, m_owner, {.initialName = m_ctx.photo.CurrentFileName});
    return !path.isEmpty() && saveTo(path) == Saved::Yes;
}

void PhotoCommands::SavePhoto2() {
    const QString path = askWhereToSave(m_ctx, m_owner, {});
    if (!path.isEmpty() && saveTo(path) == Saved::Yes) {
        Q_EMIT leave();
    }
}

void PhotoCommands::SaveMySimplePhoto() {
    frmSimpleSave dialog(m_ctx, "frmSimpleSave", m_owner);
    const frmSimpleSave::Result result = dialog.ask();
    if (result == frmSimpleSave::Result::Save) {
        m_ctx.fields.txtSimpleSavePath = dialog.path();
        tmrSavePhoto.start(0);
        return;
    }
    const auto then = std::exchange(m_afterSimpleSave, nullptr);
    if (result == frmSimpleSave::Result::More && SavePhoto() && then) {
        then();
    }
}

void PhotoCommands::SaveMySimplePhoto2() {
    const QImage SavedPicture = m_ctx.photo.picCanvas();
    frmSimpleSave dialog(m_ctx, "frmSimpleSave2", m_owner);
    const frmSimpleSave::Result result = dialog.ask();
    QString path;
    if (result == frmSimpleSave::Result::Save) {
        path = dialog.path();
    } else if (result == frmSimpleSave::Result::More) {
        // CurrentFileName is the dialog's folder now, not a name: offering it would leave the working folder.
        path = askWhereToSave(m_ctx, m_owner, {.initialName = {}, .suffix = "png", .workingDirectoryOnly = true});
    }
    if (path.isEmpty()) {
        return;
    }
    PictureWritten written;
    const PictureMetadata metadata = m_ctx.photo.metadata();
    m_ctx.tasks.run([&, details = privateDetails()] { written = writePicture(SavedPicture, path, metadata, details); },
                    Stopping::Offered);
    if (!written.ok()) {
        sayNotSaved(written);
        return;
    }
    noteSaved(m_ctx, path);
    if (result == frmSimpleSave::Result::More) {
        m_ctx.photo.setPhotoModified(false);
    }
    Q_EMIT leave();
}

void PhotoCommands::saveSimplePath() {
    const QString path = m_ctx.fields.txtSimpleSavePath;
    const auto then = std::exchange(m_afterSimpleSave, nullptr);
    const bool write = !isThere(path) || ask(m_ctx, PromptKind::Overwrite, m_owner) == Answer::Yes;
    const bool saved = write && saveTo(path) == Saved::Yes;
    LoadSettingsFromINIFile(m_ctx);
    Q_EMIT buttonsToRefresh();
    if (saved && then) {
        then();
    }
}

PrivateDetails PhotoCommands::privateDetails() const {
    return m_ctx.settings.read<Setting::PrivateDetails>() ? PrivateDetails::Kept : PrivateDetails::Removed;
}

PhotoCommands::Saved PhotoCommands::saveTo(const QString &path) {
    const PictureWritten written = m_ctx.photo.saveFile(path, privateDetails());
    if (!written.ok()) {
        sayNotSaved(written);
        return Saved::No;
    }
    noteSaved(m_ctx, path);
    const bool filled = m_ctx.photo.picCanvas().hasAlphaChannel() && !keepsTransparency(path);
    Q_EMIT saved();
    Q_EMIT done(m_ctx.texts.text("StatusSaved") + " " + QFileInfo(path).fileName() +
                (filled ? ". " + m_ctx.texts.text("StatusHolesFilled") : QString()));
    return Saved::Yes;
}

// --- The prompts ----------------------------------------------------------------------------------------------------

void PhotoCommands::SaveBeforeOpen() {
    saveBefore([this] { OpenPhotos2(); });
}

void PhotoCommands::saveBefore(const std::function<void()> &then) {
    switch (ask(m_ctx, PromptKind::SaveBeforeOpen, m_owner)) {
    case Answer::Yes:
        if (saysOddDialogs()) {
            break;
        }
        if (m_ctx.fields.txtDlgs == DialogStyle::System) {
            if (SavePhoto()) {
                then();
            }
        } else if (m_ctx.fields.txtDlgs == DialogStyle::Own) {
            m_afterSimpleSave = then;
            SaveMySimplePhoto();
        }
        break;
    case Answer::No:
        then();
        break;
    case Answer::Cancelled:
        break;
    }
}

void PhotoCommands::PastePhoto() {
    // Read the picture first: while a question is open the other program may end or change the clipboard.
    PictureRead read = readClipboardPicture(
        [this](const std::function<void()> &work, Stopping stopping) { return m_ctx.tasks.run(work, stopping); });
    read.metadata.made = QDateTime::currentDateTime();
    if (read.error != PictureError::None) {
        say(read.error);
        return;
    }
    const auto paste = [this, read] {
        Q_EMIT canvasWanted();
        const PictureError error = m_ctx.photo.pastePicture(read);
        if (error != PictureError::None) {
            say(error);
            return;
        }
        Q_EMIT toolsEnabled();
        Q_EMIT opened();
    };
    if (m_ctx.photo.PhotoModified()) {
        saveBefore(paste);
    } else {
        paste();
    }
}

void PhotoCommands::leaveEditor() {
    if (!m_ctx.photo.PhotoModified()) {
        if (ask(m_ctx, PromptKind::Exit, m_owner) == Answer::Yes) {
            m_ctx.photo.throwAway(); // a pasted picture, which counts as unchanged
            Q_EMIT leave();
        }
        return;
    }
    switch (ask(m_ctx, PromptKind::Save, m_owner)) {
    case Answer::Yes:
        if (saysOddDialogs()) {
            break;
        }
        if (m_ctx.fields.txtDlgs == DialogStyle::System) {
            SavePhoto2();
        } else if (m_ctx.fields.txtDlgs == DialogStyle::Own) {
            SaveMySimplePhoto2();
        }
        break;
    case Answer::No:
        m_ctx.photo.throwAway();
        Q_EMIT leave();
        break;
    case Answer::Cancelled:
        break;
    }
}

bool PhotoCommands::saysOddDialogs() {
    if (m_ctx.fields.txtDlgs != DialogStyle::Other) {
        return false;
    }
    Q_EMIT failed(oddSetting(m_ctx.texts, Setting::DialogStyle));
    return true;
}

void PhotoCommands::say(PictureError error) {
    const QString words = plainWords(m_ctx.texts, error);
    if (error == PictureError::Cancelled) {
        Q_EMIT done(words); // the user chose this
    } else {
        Q_EMIT failed(words);
    }
}

void PhotoCommands::sayNotSaved(const PictureWritten &written) {
    Q_EMIT failed(written.error == PictureError::Cancelled ? m_ctx.texts.text("StatusSaveStopped")
                                                           : plainWords(m_ctx.texts, written));
}

} // namespace lumora
