// Previews an operation on the photo without changing it: shown while the sliders of a panel move. Computed in another
// thread from the visible part.
#pragma once

#include "imaging/Operation.h"

#include <QObject>
#include <QTimer>
#include <functional>
#include <future>
#include <optional>

namespace lumora {

struct AppContext;
class PhotoView;

struct LiveOperation {
    /// The operation on the photo, or on a reduced copy of it at 1/factor of its size. Called in another thread:
    /// captures everything it needs by value.
    std::function<Operation(int factor)> operation;
    bool wholePhoto = false; ///< ignores the selection and moves pixels over the whole photo
    double coarsest = 16;    ///< up to which reduction of the photo it is computed; the result is reduced further
};

class LivePreview : public QObject {
    Q_OBJECT

  public:
    static constexpr int frame = 16; ///< milliseconds: no more than one picture in that time

    LivePreview(AppContext &ctx, PhotoView &view, QObject *parent = nullptr);
    ~LivePreview() override;

    /// Shows the operation instead of the one before it. While one is being computed only the newest request is kept.
    /// It follows scrolling, zooming and the selection, until clear() or until the photo changes.
    void show(LiveOperation operation);
    void clear();
    bool isShown() const { return m_operation.has_value(); }
    /// A computation is running, even if its result is obsolete.
    bool isBusy() const { return m_busy; }

  Q_SIGNALS:
    /// A preview is about to be shown; how long it was computed, in milliseconds.
    void shown(qint64 milliseconds);

  private:
    struct Job;
    void schedule();
    void start();
    std::optional<Job> makeJob() const;
    static QImage compute(const Job &job);
    void finished(int generation, const QImage &picture, const QRect &part, qint64 milliseconds);

    AppContext &m_ctx;
    PhotoView &m_view;
    std::optional<LiveOperation> m_operation;
    std::future<void> m_worker; ///< waits at the end
    QTimer m_timer;
    int m_generation = 0; ///< results of an earlier one are dropped
    bool m_busy = false;
    bool m_stale = false; ///< a newer request is waiting for the running computation
};

} // namespace lumora
