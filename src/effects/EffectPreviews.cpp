#include "effects/EffectPreviews.h"

#include "effects/EffectTable.h"
#include "imaging/EffectEngine.h"
#include "imaging/Scale.h"
#include "session/AppContext.h"
#include "widgets/FloatingToolbar.h"

namespace lumora {

namespace {

constexpr int longerSide = 240; // pixels of picSFX: tiles and brushes of ten pixels still show the photo
constexpr int detailSide = 155; // for effects on single pixels, which show as much then as on the photo

/// A picture made smaller to fit a square of that many pixels.
QImage fitted(const QImage &picture, int side) {
    const QSize size = picture.size().scaled(side, side, Qt::KeepAspectRatio).expandedTo({1, 1});
    return scaled(picture, size.width(), size.height());
}

/// The picture with the effect applied, for the item of that key; the icon stays when the engine fails. `detail`:
/// the effect is one on single pixels.
void makePicture(FloatingToolbar *bar, const QString &key, const QImage &source, const Operation &operation,
                 bool detail) {
    const PictureButton *item = bar->item(key);
    if (item == nullptr) {
        return;
    }
    const int side = qRound(item->pictureSize().width() * item->devicePixelRatioF());
    EffectEngine engine;
    engine.setPicture(detail ? fitted(source, detailSide) : source);
    if (engine.apply(operation, false)) {
        bar->setItemPicture(key, QPixmap::fromImage(fitted(engine.picture(), side)));
    }
}

} // namespace

EffectPreviews::EffectPreviews(AppContext &ctx, FloatingToolbar *FT3, FloatingToolbar *FT4, QObject *parent)
    : QObject(parent), m_ctx(ctx), m_FT3(FT3), m_FT4(FT4) {
    tmrLoadFX.setSingleShot(true);
    tmrLoadFX.setInterval(delay);
    connect(&tmrLoadFX, &QTimer::timeout, this, &EffectPreviews::SetupFoto4FX);
    connect(&m_turn, &QTimer::timeout, this, &EffectPreviews::next);
    connect(&ctx.photo, &PhotoDocument::changed, this, [this](PhotoChanges what) {
        if (what.testAnyFlags(PhotoChange::Pixels | PhotoChange::Loaded)) {
            m_jobs.clear();
            tmrLoadFX.start();
        }
    });
}

void EffectPreviews::SetupFoto4FX() {
    m_jobs.clear();
    tmrLoadFX.stop();
    if (m_ctx.photo.picCanvas().isNull()) {
        return;
    }
    m_jobs.push_back([this] {
        // Made from the canvas itself: the reduced copy is not updated on every change.
        const QImage &photo = m_ctx.photo.picCanvas();
        picSFX = fitted(photo, longerSide);
    });
    add(EffectGroup::Special, m_FT4);
    add(EffectGroup::Basic, m_FT3);
    m_turn.start(0);
}

void EffectPreviews::add(EffectGroup group, FloatingToolbar *bar) {
    for (const Effect &effect : effects(group)) {
        m_jobs.push_back([this, &effect, bar] {
            makePicture(bar, effect.key(), picSFX, operationOf(effect, false, effect.basic, 1),
                        effect.looksAtNeighbours);
        });
    }
}

void EffectPreviews::next() {
    if (!m_jobs.empty()) {
        const std::function<void()> job = std::move(m_jobs.front());
        m_jobs.pop_front();
        job();
    }
    if (m_jobs.empty()) {
        m_turn.stop();
        picSFX = {};
        Q_EMIT done();
    }
}

} // namespace lumora
