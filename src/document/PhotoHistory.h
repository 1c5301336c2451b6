// Undo and redo without a set depth. A step costs what it changed: the rectangle of pixels that differ, or the whole
// other picture, shared, where most of it or the size changed. Used by PhotoDocument only.
#pragma once

#include "base/TaskControl.h"
#include "document/StepStore.h"
#include "imaging/PictureMetadata.h"

#include <QImage>
#include <QList>
#include <QRect>
#include <deque>

namespace lumora {

/// The photo at one point of its history.
struct PhotoState {
    quint64 id = 0; ///< of no other state of this history
    PictureMetadata metadata = {};
    QString fileName = {}; ///< of the file that it was read from or written to last; empty without one
    QImage small = {};     ///< the photo reduced for a list of the states; null until setSmall
    QString madeBy = {};   ///< the icon of what made it, see setMadeBy; empty until then
};

class PhotoHistory {
  public:
    struct Limits {
        qint64 memory = qint64{640} << 20; ///< bytes of pixels kept in memory; older steps go to temporary files
        qint64 disk = -1; ///< bytes of temporary files, then the oldest step goes; -1: of 8 GB and half the free space
                          ///< the smaller
        QString folder;   ///< where the private folder is made; empty, or where none can be: the temporary folder
    };

    static constexpr quint64 firstId = 1; ///< of the picture with which the history began

    PhotoHistory();
    explicit PhotoHistory(const Limits &limits);
    /// Who does what takes long (comparing, copying and reading whole pictures); at first it is done where it is asked
    /// for. Nothing else may be asked of the history meanwhile but how many steps it has.
    void setTaskRunner(TaskRunner runner) { m_run = std::move(runner); }

    /// Records an undo point: the picture as it is now. What can be redone stays until the picture is replaced.
    void record();
    /// Records a change of the picture: a point that leads back to `before`. Nothing can be redone any more. False, and
    /// nothing recorded, when memory is refused.
    bool recordChange(const QImage &before, const QImage &after);
    /// To be called when the picture was replaced: the latest recorded point keeps leading back to the picture it was
    /// recorded with, and nothing can be redone any more. False, and nothing changed, when memory is refused.
    bool replaced(const QImage &before, const QImage &after);

    /// Steps back to the latest recorded point, or forward to what was undone last: takes the picture as it is now and
    /// gives the other one. False, and the picture unchanged, when there is none or memory is refused. A step whose
    /// file is missing is left out, and with it those that cannot be reached any more.
    bool undo(QImage &picture) { return move(picture, true); }
    bool redo(QImage &picture) { return move(picture, false); }

    /// What the picture of now says besides its pixels. Each step leads back to that of its picture.
    const PictureMetadata &metadata() const { return m_now.metadata; }
    void setMetadata(const PictureMetadata &metadata) { m_now.metadata = metadata; }

    void setFileName(const QString &name) { m_now.fileName = name; }

    /// The picture of now; its small picture is forgotten when the picture is replaced.
    const PhotoState &now() const { return m_now; }
    void setSmall(const QImage &small) { m_now.small = small; }
    void setMadeBy(const QString &icon) { m_now.madeBy = icon; }
    /// Every picture that undo and redo lead to, and that of now at the index undoSteps(), from the first on.
    QList<PhotoState> states() const;
    /// Steps back or forward to the picture with that id, as one task that tells its progress: takes the picture as it
    /// is now and gives that one, or the nearest where it is lost. False only when memory is refused; then as far as
    /// it goes.
    bool moveTo(quint64 id, QImage &picture);

    int undoSteps() const { return m_undoSteps; }
    int redoSteps() const { return m_redoSteps; }
    qint64 memoryBytes() const { return m_store.memoryBytes(); } ///< of pixels kept in memory
    qint64 diskBytes() const { return m_store.diskBytes(); }     ///< of temporary files
    /// Returns when no step is on its way to a file.
    void waitForWriter();

  private:
    /// What leads from one picture to its neighbour: nothing where both are equal, the other one's pixels in a
    /// rectangle, or the whole other one.
    struct Step {
        StepStore::Pixels pixels;
        QRect rect;
        PhotoState state = {}; ///< of the other picture; its bytes and pixels are shared
        bool isWhole() const { return pixels != nullptr && rect.isNull(); }
    };

    Step stepTo(const QImage &other, const QImage &picture);
    Step stepBackFrom(const Step &step, const QImage &picture);
    StepStore::Reading apply(const Step &step, const QImage &picture, QImage &other) const;
    bool step(QImage &picture, bool back);
    bool move(QImage &picture, bool back);
    bool walkTo(quint64 id, QImage &picture);
    int indexOf(quint64 id) const;
    void run(const std::function<void()> &work);
    void count();
    void trim();
    void spillBeyond(qint64 bytes);
    bool dropFarthest();

    TaskRunner m_run = [](const std::function<void()> &work, Stopping) {
        work();
        return true;
    };
    StepStore m_store; ///< before the steps, whose pixels it keeps
    std::deque<Step> m_steps;
    PhotoState m_now{.id = firstId};
    quint64 m_lastId = firstId;
    int m_position = 0; ///< steps before it can be undone, those from it on redone
    // The same for who asks while another thread moves: they change on the window's thread only.
    int m_undoSteps = 0;
    int m_redoSteps = 0;
    bool m_inTask = false; ///< a task of moveTo runs: parts of it start no other
};

} // namespace lumora
