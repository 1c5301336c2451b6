// Decodes the next picture of a slideshow outside the window's thread. Asked by SlideShow, one picture ahead.
#pragma once

#include <QImage>
#include <QObject>
#include <QSize>
#include <QStringList>
#include <memory>

namespace lumora {

class TaskControl;

struct Slide {
    int index = -1; ///< in the list of names; -1 when none of the files can be shown
    QImage picture; ///< as large as it fits into the room, opaque: what was transparent is black
};

class SlideLoader : public QObject {
    Q_OBJECT

  public:
    using QObject::QObject;
    ~SlideLoader() override { drop(); }

    /// Looks for the first of these files of the folder that can be shown, from `first` (an index) once around the
    /// list, and has its picture ready at the size that fits into `room` (pixels). found() follows, never before this
    /// returns. What was looked for before is dropped.
    void find(const QString &folder, const QStringList &names, int first, QSize room);
    /// Stops looking; found() does not follow.
    void drop();
    bool isLooking() const { return m_control != nullptr; }

  Q_SIGNALS:
    void found(const lumora::Slide &slide);

  private:
    void finish(const std::shared_ptr<TaskControl> &control, const Slide &slide);

    std::shared_ptr<TaskControl> m_control; ///< of the search under way; a later search has another one
};

} // namespace lumora
