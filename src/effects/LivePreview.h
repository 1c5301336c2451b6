// Shows on the photo itself what an operation would do to it, without touching it: what a panel shows while its sliders
// move. Computed in another thread from what is in view.
#pragma once

#include "imaging/Operation.h"

#include <QObject>
#include <QThreadPool>
#include <QTimer>
#include <functional>
#include <optional>

namespace lumora {

struct AppContext;
class PhotoView;

struct LiveOperation {
    /// What runs on the photo, or on a reduced copy of it at 1/factor of its size. Called in another thread: takes
    /// everything it needs along as copies.
    std::function<Operation(int factor)> operation;
    bool wholePhoto = false; ///< does not keep to the selection, and its pixels move over the whole photo
    bool atFullSize = false; ///< what it does shows in the photo's own pixels only; the result is reduced
};

class LivePreview : public QObject {
    Q_OBJECT

  public:
    static constexpr int frame = 16; ///< milliseconds: no more than one picture in that time

    LivePreview(AppContext &ctx, PhotoView &view, QObject *parent = nullptr);
    ~LivePreview() override;

    /// Shows the operation instead of the one before it. While one is being computed only the newest is kept. It
    /// follows scrolling, zooming and the selection, until clear() or until the photo changes.
    void show(LiveOperation operation);
    void clear();
    bool isShown() const { return m_operation.has_value(); }
    /// Something is being computed, wanted still or no longer.
    bool isBusy() const { return m_busy; }

  Q_SIGNALS:
    /// A picture is on its way to the view; how long it was computed, in milliseconds.
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
    QThreadPool m_worker;
    QTimer m_timer;
    int m_generation = 0; ///< results of an earlier one are dropped
    bool m_busy = false;
    bool m_stale = false; ///< something newer is wanted than what is being computed
};

} // namespace lumora
