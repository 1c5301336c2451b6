// The one photo of the program: its holders, its flags, its history. Views and tools read it and learn of changes
// through one signal; the photo is changed only through it.
#pragma once

#include "document/PhotoHistory.h"
#include "document/PhotoSelection.h"
#include "document/RecoveryCopy.h"
#include "imaging/PictureFile.h"

#include <QImage>
#include <QObject>
#include <QString>
#include <array>
#include <functional>

namespace lumora {

/// What a change touched; several at once.
enum class PhotoChange {
    Pixels = 1,
    Size = 2,
    Selection = 4,
    Zoom = 8,
    Modified = 16,
    Loaded = 32,
    History = 64,
    Edited = 128, ///< a tool has changed the photo: no undo, no redo, no other photo
    Saved = 256,  ///< the photo was written to a file
};
Q_DECLARE_FLAGS(PhotoChanges, PhotoChange)
Q_DECLARE_OPERATORS_FOR_FLAGS(PhotoChanges)

/// How the canvas is drawn: 0 as clear squares (above 100 %), 2 smoothly.
enum class DrawingMode { Squares = 0, Smooth = 2 };

class PhotoDocument : public QObject {
    Q_OBJECT

  public:
    explicit PhotoDocument(QObject *parent = nullptr);
    /// With these limits of the undo history.
    explicit PhotoDocument(const PhotoHistory::Limits &limits, QObject *parent = nullptr);
    ~PhotoDocument() override;

    /// Who does what takes long: the undo history and writing files. At first it is done where it is asked for. While
    /// the runner is at it the photo cannot be changed: who tries is refused.
    void setTaskRunner(const TaskRunner &runner);

    // The holders. All share their pixels until one is changed.
    const QImage &picCanvas() const { return m_canvas; } ///< the working photo, full resolution
    const QImage &picBuffer() const { return m_buffer; } ///< as it was last loaded or pasted
    const QImage &picThumb() const { return m_thumb; }   ///< a copy of the current photo
    /// The reduced copy, longer side 480 pixels. Made when first asked for after CreateDummyPicture.
    const QImage &pic2nd() const;
    QImage &picCM(int n); ///< colour-focus preview n, 1 to 4

    /// What the photo's file said besides its pixels; comes and goes with the photo, through undo and redo too.
    const PictureMetadata &metadata() const { return m_history.metadata(); }
    /// Of its file, without the folder; empty where it is in none yet.
    const QString &fileName() const { return m_history.now().fileName; }

    /// The marked region; lost when another photo comes, after undo and redo and when the size changes.
    const PhotoSelection &selection() const { return m_selection; }
    void setSelection(const PhotoSelection &selection);
    /// Hides the marked region because an effect has used it.
    void useUpSelection();
    /// What useUpSelection hid last, to be marked once more: until something else is marked, the whole photo is
    /// changed, another photo comes or the size changes.
    const PhotoSelection &usedSelection() const { return m_usedSelection; }

    bool PhotoLoaded() const { return m_loaded; }
    bool PhotoModified() const { return m_modified; }
    void setPhotoModified(bool modified);
    /// Whether the photo would be lost with the program: it has changes that are not saved, or was pasted and is in no
    /// file yet.
    bool isOnlyHere() const { return m_modified || m_pasted; }
    /// Tells those who keep such photos that the user gives up what isOnlyHere: see thrownAway.
    void throwAway();
    QString CurrentFileName; ///< initial file name of the system's file dialogs

    // The view's settings.
    int zoom() const { return m_zoom; } ///< percent, 1 or more
    bool magnify() const { return m_magnify; }
    DrawingMode drawingMode() const { return m_drawingMode; }

    /// Chooses the zoom at which the whole photo fits a canvas of that size in pixels, never above 100 %; sets
    /// PhotoLoaded. Without a picture or with an empty canvas nothing changes.
    void fitPhoto(QSize canvas);
    /// Lowers the zoom to the largest at which the whole photo is in a canvas of that size in pixels, where it is not:
    /// fitPhoto looks at one side only. 1 % is the smallest.
    void showWhole(QSize canvas);
    /// 10 % nearer, without an upper limit; above 100 % as clear squares.
    void PerformZoomIn();
    /// 10 % farther, not below 30 %. Leaves the way of drawing as it is.
    void PerformZoomOut();
    /// Sets a zoom in percent (1 or more) and the way of drawing that PerformZoomIn would give it.
    void setZoom(int percent);
    /// Restores the canvas's display settings after the picture was replaced; the zoom stays.
    void ResizePicCanvas();
    /// Empties picCM1 to picCM4 and has pic2nd rebuilt from the canvas.
    void CreateDummyPicture();

    // Changing the photo.
    /// Records an undo point: the picture that the canvas holds now. Nothing is recorded while the canvas is empty.
    void RecordUndoPoint();
    /// Which of the usual steps follow a change.
    struct ChangeSteps {
        bool recordUndo = true;
        bool modified = true;
    };
    /// The way in which tools change the photo: records the undo point, replaces the picture, refreshes the copies,
    /// sets PhotoModified, says what changed. False, and nothing changed, for a null picture, when memory is refused
    /// and while another change is under way.
    bool changePhoto(const QImage &next);
    bool changePhoto(const QImage &next, ChangeSteps steps);

    /// One step back or forward. Without a photo nothing happens; with nothing to step to the picture stays. False
    /// only when there was a step and memory for it was refused: the picture and the history are as before.
    bool PerformUndo();
    bool PerformRedo();
    const PhotoHistory &history() const { return m_history; }
    /// Undoes or redoes the steps up to the state with that id, see PhotoHistory::moveTo, which also says when it is
    /// false.
    bool goToState(quint64 id);
    /// The states of the history, all with their small pictures. Not while a change is under way: then none.
    QList<PhotoState> states();
    /// What has made the photo of now: the name of its icon.
    void setMadeBy(const QString &icon) { m_history.setMadeBy(icon); }

    // Files.
    /// Where the picture comes from: LoadPhoto clears PhotoModified, tmrLoadPhoto leaves it as it is; what is in no
    /// file yet, a scan or what was recovered, sets it.
    enum class OpenRoute { LoadPhoto, TmrLoadPhoto, Unsaved };
    /// Records an undo point, loads the file into the canvas, refreshes all holders. When the file cannot be read the
    /// photo, the flags and what can be redone stay as they were; when memory is refused no undo point is recorded
    /// either.
    PictureError openFile(const QString &path, OpenRoute route);
    /// The same for a picture already read (start-up reads it while the window is built) or
    /// scanned.
    PictureError openPicture(const PictureRead &read, OpenRoute route);
    /// Puts a picture from the clipboard in the photo's place the way a loaded file does, but without an undo point;
    /// clears PhotoModified; see isOnlyHere. With an error nothing changes.
    PictureError pastePicture(const PictureRead &read);
    /// Writes the canvas and its metadata to the path; clears PhotoModified when the file is written. Cancelled: the
    /// user stopped it, and the file is as it was.
    PictureWritten saveFile(const QString &path, PrivateDetails details = PrivateDetails::Removed);

    /// Stores the canvas in MemoryPhoto as base64 JPEG text; loads it back into picBuffer at a width of 120 pixels.
    void SavePhotoToMemory();
    void OpenPhotoFromMemory();
    const QByteArray &MemoryPhoto() const { return m_memoryPhoto; }

  Q_SIGNALS:
    void changed(lumora::PhotoChanges what);
    /// A photo with changes that are in no file was given up: another one has come, or the user leaves. Before
    /// `changed`.
    void thrownAway(const lumora::KeptPhoto &photo);

  private:
    bool restoreDisplay();
    class Change;
    bool replaceCanvas(const QImage &next, bool recordUndo);
    bool walkHistory(const std::function<bool(QImage &)> &walk);
    void makeSmall();
    bool wouldBeLost() const;
    PictureError fillFrom(const PictureRead &read, OpenRoute route, bool recordUndo, bool pasted);

    TaskRunner m_run;
    bool m_changing = false;
    PhotoHistory m_history;
    PhotoSelection m_selection;
    PhotoSelection m_usedSelection;
    QImage m_canvas, m_buffer, m_thumb;
    mutable QImage m_2nd;
    mutable bool m_2ndStale = false;
    std::array<QImage, 4> m_cm;
    bool m_loaded = false;
    bool m_modified = false;
    qint64 m_inFile = 0;   ///< cache key of the picture that was opened from a file or saved last
    bool m_pasted = false; ///< and not saved since; the photo counts as unchanged all the same
    int m_zoom = 100;
    bool m_magnify = false;
    DrawingMode m_drawingMode = DrawingMode::Smooth;
    QByteArray m_memoryPhoto;
};

} // namespace lumora
