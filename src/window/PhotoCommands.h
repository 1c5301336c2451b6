// Opening, saving and leaving: implements the Open, Save and Exit buttons, with either kind of dialog (Lumora's or the
// system's). Owned by the main window, which connects to the signals.
#pragma once

#include "document/PhotoDocument.h"

#include <QObject>
#include <QTimer>
#include <functional>

class QWidget;

namespace lumora {

struct AppContext;

class PhotoCommands : public QObject {
    Q_OBJECT

  public:
    PhotoCommands(AppContext &ctx, QWidget *owner);

    /// The Open and Save buttons.
    void open();
    void save();
    /// Opens that file like the Open button: asks first when there are unsaved changes.
    void openDropped(const QString &path);
    /// Asks like ExitApp and leaves the editor when the answer allows it.
    void leaveEditor();
    /// Shows a picture read while the window was built, or reads the path now where there is none.
    void openAtStart(const PictureRead &read);

    void OpenPhotos();
    void OpenPhotos2();
    void SavePhotos();
    void LoadPhoto();
    /// Returns true when the file was written.
    bool SavePhoto();
    void SavePhoto2();
    void OpenMySimplePhoto();
    void OpenMySimplePhoto2();
    void SaveMySimplePhoto();
    void SaveMySimplePhoto2();
    void SaveBeforeOpen();
    /// Replaces the photo with the clipboard's picture; asks first when there are unsaved changes.
    void PastePhoto();

  Q_SIGNALS:
    /// The Arrow tool should become current.
    void firstToolWanted();
    void toolsEnabled();
    /// There is still no photo.
    void toolsDisabled();
    /// The canvas and the side panel should be shown.
    void canvasWanted();
    /// A photo was loaded into the canvas.
    void opened();
    void buttonsToRefresh();
    /// The photo is one that was thrown away, from that file of the DiscardedPhotos.
    void broughtBack(const QString &path);
    /// The photo is in its file.
    void saved();
    /// A message for the status line: success or failure.
    void done(const QString &text);
    void failed(const QString &text);
    /// The user leaves the editor: close the main window, show the launcher.
    void leave();

  private:
    enum class Saved { Yes, No };
    PictureRead readInBackground(const QString &path);
    using Route = PhotoDocument::OpenRoute;
    /// True when the picture is the photo now.
    bool loadInto(const PictureRead &read, Route route);
    void bringBack(const QString &path);
    void refreshTools();
    void loadSimplePath();
    void saveSimplePath();
    Saved saveTo(const QString &path);
    PrivateDetails privateDetails() const;
    void openSimple(const QString &form);
    /// Asks frmSave2; runs `then` once the changes are saved or discarded.
    void saveBefore(const std::function<void()> &then);
    void say(PictureError error);
    void sayNotSaved(const PictureWritten &written);
    /// Says why no file dialog comes, where the settings name none. True when it has.
    bool saysOddDialogs();

    AppContext &m_ctx;
    QWidget *m_owner;
    QTimer tmrLoadPhoto;
    QTimer tmrSavePhoto;
    std::function<void()> m_afterSimpleSave; ///< runs after the Simple save
};

} // namespace lumora
