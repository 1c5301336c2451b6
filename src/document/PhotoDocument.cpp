#include "document/PhotoDocument.h"

#include "imaging/Picture.h"
#include "imaging/Scale.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace lumora {

namespace {

constexpr int zoomStep = 10;
constexpr int smallestStepZoom = 30;
constexpr int dummyLongerSide = 480;
constexpr int smallLongerSide = 192; // pixels, of the states of the history: about 100 KB each
constexpr int memoryPhotoWidth = 120;

/// Halves to even: the processor's rounding, which nothing here changes.
int rounded(double value) {
    return static_cast<int>(std::nearbyint(value));
}

/// The picture at that size: averaged where it becomes smaller, smooth where it becomes larger; null when memory is
/// refused.
QImage atSize(const QImage &picture, QSize size) {
    if (size == picture.size()) {
        return picture;
    }
    const QImage smaller = scaleByAveraging(picture, size.width(), size.height());
    // Never by the toolkit, which waits for ever where the system refuses it a thread.
    return !smaller.isNull() ? smaller : scaled(picture, size.width(), size.height());
}

/// What a side becomes when the other one is scaled to a fixed length.
int following(int side, int other, int otherBecomes) {
    return std::max(1, rounded(static_cast<double>(side) * otherBecomes / other));
}

QImage editableFormat(const QImage &picture) {
    const bool kept = picture.format() == QImage::Format_RGB32 || picture.format() == QImage::Format_ARGB32;
    return kept ? picture : toPicture(picture);
}

} // namespace

/// Holds the photo for one change: long parts of it let the event loop run, and whatever comes from there must not
/// begin a second one.
class PhotoDocument::Change {
  public:
    explicit Change(PhotoDocument &photo) : m_photo(photo), m_isFirst(!std::exchange(photo.m_changing, true)) {}
    Change(const Change &) = delete;
    Change &operator=(const Change &) = delete;
    ~Change() {
        if (m_isFirst) {
            m_photo.m_changing = false;
        }
    }
    bool isRefused() const { return !m_isFirst; }

  private:
    PhotoDocument &m_photo;
    const bool m_isFirst;
};

PhotoDocument::PhotoDocument(QObject *parent) : PhotoDocument(PhotoHistory::Limits(), parent) {}

PhotoDocument::PhotoDocument(const PhotoHistory::Limits &limits, QObject *parent) : QObject(parent), m_history(limits) {
    setTaskRunner([](const std::function<void()> &work, Stopping) {
        work();
        return true;
    });
}

PhotoDocument::~PhotoDocument() = default;

void PhotoDocument::setTaskRunner(const TaskRunner &runner) {
    m_run = runner;
    m_history.setTaskRunner(runner);
}

const QImage &PhotoDocument::pic2nd() const {
    if (m_2ndStale) {
        m_2ndStale = false;
        const int width = m_canvas.width();
        const int height = m_canvas.height();
        const QSize size = height <= width ? QSize(dummyLongerSide, following(height, width, dummyLongerSide))
                                           : QSize(following(width, height, dummyLongerSide), dummyLongerSide);
        m_2nd = atSize(m_canvas, size);
    }
    return m_2nd;
}

QImage &PhotoDocument::picCM(int n) {
    return m_cm[static_cast<size_t>(std::clamp(n, 1, 4) - 1)];
}

void PhotoDocument::setSelection(const PhotoSelection &selection) {
    m_selection = selection;
    if (!m_selection.isEmpty()) {
        m_usedSelection.hide();
    }
    Q_EMIT changed(PhotoChange::Selection);
}

void PhotoDocument::useUpSelection() {
    if (!m_selection.isEmpty()) {
        m_usedSelection = m_selection;
    }
    m_selection.hide();
    Q_EMIT changed(PhotoChange::Selection);
}

void PhotoDocument::setPhotoModified(bool modified) {
    if (m_modified != modified) {
        m_modified = modified;
        Q_EMIT changed(PhotoChange::Modified);
    }
}

void PhotoDocument::fitPhoto(QSize canvas) {
    if (m_canvas.isNull() || canvas.isEmpty()) {
        return;
    }
    const double width = m_canvas.width();
    const double height = m_canvas.height();
    const auto byWidth = [&] { return rounded(100.0 / (width / canvas.width())); };
    const auto byHeight = [&] { return rounded(100.0 / (height / canvas.height())); };
    // The other side is asked only when the first would need enlarging, and its answer counts as it is.
    const bool wide = width > 1.5 * height;
    int zoom = wide ? byWidth() : byHeight();
    if (zoom >= 101) {
        zoom = wide ? byHeight() : byWidth();
    }
    m_zoom = std::clamp(zoom, 1, 100);
    PhotoChanges what = PhotoChange::Zoom;
    what.setFlag(PhotoChange::Loaded, !m_loaded);
    m_loaded = true;
    Q_EMIT changed(what);
}

void PhotoDocument::showWhole(QSize canvas) {
    if (m_canvas.isNull() || canvas.isEmpty()) {
        return;
    }
    const int largest = std::min(100 * canvas.width() / m_canvas.width(), 100 * canvas.height() / m_canvas.height());
    if (m_zoom > largest) {
        m_zoom = std::max(largest, 1);
        Q_EMIT changed(PhotoChange::Zoom);
    }
}

void PhotoDocument::PerformZoomIn() {
    setZoom(m_zoom + zoomStep);
}

void PhotoDocument::PerformZoomOut() {
    m_zoom = std::max(m_zoom - zoomStep, smallestStepZoom);
    Q_EMIT changed(PhotoChange::Zoom);
}

void PhotoDocument::setZoom(int percent) {
    m_zoom = std::max(percent, 1);
    m_magnify = m_zoom >= 101;
    m_drawingMode = m_magnify ? DrawingMode::Squares : DrawingMode::Smooth;
    Q_EMIT changed(PhotoChange::Zoom);
}

bool PhotoDocument::restoreDisplay() {
    const bool different = m_drawingMode != DrawingMode::Smooth;
    m_drawingMode = DrawingMode::Smooth;
    return different;
}

void PhotoDocument::ResizePicCanvas() {
    if (restoreDisplay()) {
        Q_EMIT changed(PhotoChange::Zoom);
    }
}

void PhotoDocument::CreateDummyPicture() {
    m_cm.fill(QImage());
    m_2nd = QImage();
    m_2ndStale = !m_canvas.isNull();
}

void PhotoDocument::RecordUndoPoint() {
    if (!m_canvas.isNull()) {
        makeSmall();
        m_history.record();
        Q_EMIT changed(PhotoChange::History);
    }
}

bool PhotoDocument::replaceCanvas(const QImage &next, bool recordUndo) {
    if (recordUndo) {
        makeSmall();
    }
    const auto tell = recordUndo ? &PhotoHistory::recordChange : &PhotoHistory::replaced;
    if (!m_canvas.isNull() && !(m_history.*tell)(m_canvas, next)) {
        return false;
    }
    m_canvas = next;
    return true;
}

bool PhotoDocument::changePhoto(const QImage &next) {
    return changePhoto(next, ChangeSteps());
}

bool PhotoDocument::changePhoto(const QImage &next, ChangeSteps steps) {
    const QImage picture = editableFormat(next);
    std::optional<Change> change(*this);
    if (picture.isNull() || change->isRefused()) {
        return false;
    }
    PhotoChanges what = PhotoChange::Pixels | PhotoChange::History | PhotoChange::Edited;
    const bool resized = picture.size() != m_canvas.size();
    if (!replaceCanvas(picture, steps.recordUndo)) {
        return false;
    }
    m_thumb = m_canvas;
    CreateDummyPicture();
    if (resized) {
        m_selection.hide();
        m_usedSelection.hide();
        what |= PhotoChange::Size | PhotoChange::Selection;
        what.setFlag(PhotoChange::Zoom, restoreDisplay());
    }
    if (m_selection.isEmpty() && !m_usedSelection.isEmpty()) { // the next step was another one
        m_usedSelection.hide();
        what |= PhotoChange::Selection;
    }
    if (steps.modified && !m_modified) {
        m_modified = true;
        what |= PhotoChange::Modified;
    }
    change.reset();
    Q_EMIT changed(what);
    return true;
}

bool PhotoDocument::PerformUndo() {
    return walkHistory([this](QImage &canvas) { return m_history.undo(canvas) || m_history.undoSteps() == 0; });
}

bool PhotoDocument::PerformRedo() {
    return walkHistory([this](QImage &canvas) { return m_history.redo(canvas) || m_history.redoSteps() == 0; });
}

bool PhotoDocument::goToState(quint64 id) {
    return walkHistory([this, id](QImage &canvas) { return m_history.moveTo(id, canvas); });
}

bool PhotoDocument::walkHistory(const std::function<bool(QImage &)> &walk) {
    std::optional<Change> change(*this);
    if (!m_loaded || change->isRefused()) {
        return true;
    }
    makeSmall();
    const QSize sizeBefore = m_canvas.size();
    QImage canvas = m_canvas; // what is on the screen stays until the step is whole
    const bool walked = walk(canvas);
    change.reset();
    m_canvas = canvas;
    m_thumb = m_canvas;
    CreateDummyPicture();
    PhotoChanges what = PhotoChange::Pixels | PhotoChange::History;
    what.setFlag(PhotoChange::Size, m_canvas.size() != sizeBefore);
    what.setFlag(PhotoChange::Zoom, restoreDisplay());
    // The marked region was one of another picture; the free-resize frame goes back to its stored rectangle.
    m_selection.hide();
    if (what.testFlag(PhotoChange::Size)) {
        m_usedSelection.hide();
    }
    what |= PhotoChange::Selection;
    Q_EMIT changed(what);
    return walked;
}

/// Of the photo of now, while it is here: from the reduced copy, which the previews have mostly made already.
void PhotoDocument::makeSmall() {
    if (m_history.now().small.isNull() && !m_canvas.isNull()) {
        const QImage &reduced = pic2nd();
        const QSize size = reduced.size().scaled(smallLongerSide, smallLongerSide, Qt::KeepAspectRatio);
        m_history.setSmall(atSize(reduced, size.expandedTo({1, 1})));
    }
}

QList<PhotoState> PhotoDocument::states() {
    if (m_changing) {
        return {};
    }
    makeSmall();
    return m_history.states();
}

bool PhotoDocument::wouldBeLost() const {
    return isOnlyHere() && !m_canvas.isNull() && m_canvas.cacheKey() != m_inFile;
}

void PhotoDocument::throwAway() {
    if (wouldBeLost()) {
        Q_EMIT thrownAway({m_canvas, metadata()});
    }
}

PictureError PhotoDocument::openFile(const QString &path, OpenRoute route) {
    return openPicture(readPicture(path), route);
}

PictureError PhotoDocument::openPicture(const PictureRead &read, OpenRoute route) {
    // A point is recorded even when the file turns out to be no picture: it then leads back to the same photo.
    if (read.error != PictureError::None && read.error != PictureError::NoMemory) {
        RecordUndoPoint();
    }
    return fillFrom(read, route, true, false);
}

PictureError PhotoDocument::pastePicture(const PictureRead &read) {
    return fillFrom(read, OpenRoute::LoadPhoto, false, true);
}

PictureError PhotoDocument::fillFrom(const PictureRead &read, OpenRoute route, bool recordUndo, bool pasted) {
    if (read.error != PictureError::None) {
        return read.error;
    }
    std::optional<Change> change(*this);
    if (change->isRefused()) {
        return PictureError::Cancelled;
    }
    const QImage picture = editableFormat(read.picture);
    if (picture.isNull()) {
        return read.picture.isNull() ? PictureError::NotAPicture : PictureError::NoMemory;
    }
    const std::optional<KeptPhoto> lost =
        wouldBeLost() ? std::optional<KeptPhoto>({m_canvas, metadata()}) : std::nullopt;
    if (!replaceCanvas(picture, recordUndo)) {
        return PictureError::NoMemory;
    }
    m_history.setMetadata(read.metadata);
    m_history.setFileName(read.fileName);
    m_history.setMadeBy(pasted ? QStringLiteral("paste") : QStringLiteral("open"));
    restoreDisplay();
    m_selection.hide();
    m_usedSelection.hide();
    m_loaded = true;
    m_buffer = m_canvas;
    m_thumb = m_canvas;
    CreateDummyPicture();
    PhotoChanges what = PhotoChange::Pixels | PhotoChange::Size | PhotoChange::Zoom | PhotoChange::Loaded;
    what |= PhotoChange::History | PhotoChange::Selection;
    const bool unsaved = route == OpenRoute::Unsaved;
    const bool modified = unsaved || (route == OpenRoute::TmrLoadPhoto && m_modified);
    what.setFlag(PhotoChange::Modified, modified != m_modified);
    m_modified = modified;
    m_pasted = pasted;
    m_inFile = unsaved || pasted ? 0 : m_canvas.cacheKey();
    change.reset();
    if (lost) {
        Q_EMIT thrownAway(*lost);
    }
    Q_EMIT changed(what);
    return PictureError::None;
}

PictureWritten PhotoDocument::saveFile(const QString &path, PrivateDetails details) {
    if (m_canvas.isNull()) {
        return {PictureError::NotAPicture, QStringLiteral("there is no photo to save")};
    }
    PictureWritten written;
    const qint64 key = m_canvas.cacheKey();
    m_run([&, picture = m_canvas, said = metadata()] { written = writePicture(picture, path, said, details); },
          Stopping::Offered);
    if (written.ok()) {
        m_inFile = key;
        m_history.setFileName(QFileInfo(path).fileName());
        if (std::exchange(m_pasted, false) && !m_modified) {
            Q_EMIT changed(PhotoChange::Modified);
        }
        setPhotoModified(false);
        Q_EMIT changed(PhotoChange::Saved);
    }
    return written;
}

void PhotoDocument::SavePhotoToMemory() {
    const QByteArray jpeg = m_canvas.isNull() ? QByteArray() : encodeJpeg(m_canvas);
    if (!jpeg.isEmpty()) {
        m_memoryPhoto = jpeg.toBase64();
    }
}

void PhotoDocument::OpenPhotoFromMemory() {
    const PictureRead read = readPictureFromData(QByteArray::fromBase64(m_memoryPhoto));
    if (!read.picture.isNull()) {
        const int height = following(read.picture.height(), read.picture.width(), memoryPhotoWidth);
        m_buffer = atSize(read.picture, QSize(memoryPhotoWidth, height));
    }
}

} // namespace lumora
