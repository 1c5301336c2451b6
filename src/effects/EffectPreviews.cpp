#include "effects/EffectPreviews.h"

#include "effects/EffectTable.h"
#include "imaging/EffectEngine.h"
#include "imaging/Scale.h"
#include "session/AppContext.h"
#include "widgets/FloatingToolbar.h"

#include <algorithm>
#include <utility>

namespace lumora {

namespace {

constexpr int longerSide = 190; // pixels of picSFX, see Effect::iconCopy

QSize fittedSize(const QSize &size, int side) {
    return size.scaled(side, side, Qt::KeepAspectRatio).expandedTo({1, 1});
}

/// A picture made smaller to fit a square of that many pixels.
QImage fitted(const QImage &picture, int side) {
    const QSize size = fittedSize(picture.size(), side);
    return scaled(picture, size.width(), size.height());
}

/// The picture with the effect applied, for the effect's item; the icon stays when the engine fails. `source`: a copy
/// of the photo, which has that size.
void makePicture(FloatingToolbar *bar, const Effect &effect, const QImage &source, const QSize &photo) {
    const PictureButton *item = bar->item(effect.key());
    if (item == nullptr) {
        return;
    }
    const int side = qRound(item->pictureSize().width() * item->devicePixelRatioF());
    EffectEngine engine;
    engine.setPicture(fitted(source, std::min(effect.iconCopy, longerSide)));
    if (engine.apply(operationOf(effect, false, effect.basic, 1), false)) {
        const QSize size = fittedSize(photo, side);
        bar->setItemPicture(effect.key(), QPixmap::fromImage(scaled(engine.picture(), size.width(), size.height())));
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
            if (m_wanted) {
                tmrLoadFX.start();
            }
        }
    });
}

void EffectPreviews::begin() {
    if (!std::exchange(m_wanted, true)) {
        SetupFoto4FX();
    }
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
        m_jobs.push_back([this, &effect, bar] { makePicture(bar, effect, picSFX, m_ctx.photo.picCanvas().size()); });
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
