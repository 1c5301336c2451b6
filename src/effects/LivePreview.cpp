#include "effects/LivePreview.h"

#include "base/OwnThread.h"
#include "imaging/EffectEngine.h"
#include "imaging/Scale.h"
#include "imaging/transforms/Canvas.h"
#include "session/AppContext.h"
#include "view/PhotoView.h"

#include <QElapsedTimer>
#include <cmath>
#include <new>
#include <utility>

namespace lumora {

namespace {

/// The selection on a picture of 1/factor of the photo's size, relative to a corner of a part of it.
Region regionOn(const PhotoSelection &selection, int factor, const QRect &part) {
    const auto place = [&](double x, double y) {
        return PicturePoint{x / factor - part.left(), y / factor - part.top()};
    };
    const QRect &box = selection.box();
    if (selection.shape() == PhotoSelection::Shape::Lasso) {
        std::vector<PicturePoint> points;
        points.reserve(selection.lassoPoints().size());
        for (const PicturePoint &point : selection.lassoPoints()) {
            points.push_back(place(point.x, point.y));
        }
        return Region::lasso(part.width(), part.height(), points);
    }
    const PicturePoint from = place(box.x(), box.y());
    const PicturePoint to = place(double(box.x()) + box.width(), double(box.y()) + box.height());
    const auto make = selection.shape() == PhotoSelection::Shape::Ellipse ? &Region::ellipse : &Region::rectangle;
    const auto nearest = [](double value) { return static_cast<int>(std::lround(value)); };
    return make(part.width(), part.height(), nearest(from.x), nearest(from.y), nearest(to.x), nearest(to.y));
}

/// The pixels of a picture of 1/factor of the photo's size that hold that part of the photo.
QRect reduced(const QRect &part, int factor) {
    return {QPoint(part.left() / factor, part.top() / factor), QPoint(part.right() / factor, part.bottom() / factor)};
}

QRect enlarged(const QRect &part, int factor) {
    return {part.topLeft() * factor, part.size() * factor};
}

} // namespace

struct LivePreview::Job {
    LiveOperation operation;
    QImage picture;        ///< the photo, or a reduced copy of it
    int factor = 1;        ///< of that picture
    int shownFactor = 1;   ///< of what the view paints from
    QRect part;            ///< pixels of the picture that are in view
    bool limited = false;  ///< to the selection
    PhotoSelection marked; ///< where limited
};

LivePreview::LivePreview(AppContext &ctx, PhotoView &view, QObject *parent)
    : QObject(parent), m_ctx(ctx), m_view(view) {
    m_timer.setSingleShot(true);
    m_timer.setInterval(frame);
    connect(&m_timer, &QTimer::timeout, this, &LivePreview::start);
    connect(&view, &PhotoView::visiblePartChanged, this, &LivePreview::schedule);
    connect(&ctx.photo, &PhotoDocument::changed, this, [this](PhotoChanges what) {
        if (what.testAnyFlags(PhotoChange::Pixels | PhotoChange::Size | PhotoChange::Loaded)) {
            clear(); // the operation was for the previous photo
        } else if (what.testFlag(PhotoChange::Selection)) {
            schedule();
        }
    });
}

LivePreview::~LivePreview() {
    m_worker = {}; // waits while the rest of this is there
}

void LivePreview::show(LiveOperation operation) {
    m_operation = std::move(operation);
    schedule();
}

void LivePreview::clear() {
    ++m_generation;
    m_operation.reset();
    m_timer.stop();
    m_stale = false;
    m_view.clearPreview();
}

void LivePreview::schedule() {
    if (!m_operation) {
        return;
    }
    if (m_busy) {
        m_stale = true;
    } else if (!m_timer.isActive()) {
        m_timer.start();
    }
}

std::optional<LivePreview::Job> LivePreview::makeJob() const {
    const ToolFlags &flags = m_ctx.flags;
    const QRect visible = m_view.visiblePart();
    const bool limited = flags.SelectionActive() && !m_operation->wholePhoto;
    if (visible.isEmpty()) {
        return std::nullopt;
    }
    const MipLevels::Level level = m_view.visibleLevel();
    const MipLevels::Level worked = m_view.visibleLevel(m_operation->coarsest);
    Job job{*m_operation, worked.picture, worked.factor, level.factor, {}, limited, m_ctx.photo.selection()};
    // Whole pixels of the level that the view paints from, also where a larger one is worked on.
    job.part = enlarged(reduced(visible, job.shownFactor), job.shownFactor / job.factor) & job.picture.rect();
    if (limited && regionOn(job.marked, job.factor, job.part).isEmpty()) {
        return std::nullopt;
    }
    return job;
}

void LivePreview::start() {
    const std::optional<Job> job = makeJob();
    if (!job) {
        m_view.clearPreview();
        return;
    }
    m_busy = true;
    m_stale = false;
    m_worker = inOwnThread([this, job = *job, generation = m_generation] {
        QElapsedTimer time;
        time.start();
        const QImage picture = compute(job);
        const QRect part = enlarged(job.part, job.factor);
        QMetaObject::invokeMethod(
            this, [=, this, spent = time.elapsed()] { finished(generation, picture, part, spent); },
            Qt::QueuedConnection);
    });
}

/// Runs in the worker. The engine changes only the visible part; it reads beyond it where needed.
QImage LivePreview::compute(const Job &job) {
    try {
        EffectEngine engine;
        engine.setPicture(job.picture);
        const QRect &part = job.part;
        engine.setRectangularRegion(part.left(), part.top(), part.right() + 1, part.bottom() + 1);
        if (!engine.apply(job.operation.operation(job.factor), !job.operation.wholePhoto)) {
            return {};
        }
        QImage picture = engine.picture().copy(part);
        if (job.limited) {
            QImage marked = job.picture.copy(part);
            pasteThrough(marked, picture, regionOn(job.marked, job.factor, part), 0, 0, 100);
            picture = marked;
        }
        return job.factor == job.shownFactor ? picture : boxReduced(picture, job.shownFactor / job.factor);
    } catch (const std::bad_alloc &) {
        return {};
    }
}

void LivePreview::finished(int generation, const QImage &picture, const QRect &part, qint64 milliseconds) {
    m_busy = false;
    if (generation == m_generation) {
        m_view.showPreview(picture, part);
        Q_EMIT shown(milliseconds);
    } else {
        m_stale = m_operation.has_value();
    }
    if (m_stale) {
        m_timer.start();
    }
}

} // namespace lumora
