#include "effects/Frames.h"

#include "imaging/Scale.h"
#include "imaging/transforms/FrameOverlay.h"
#include "session/AppContext.h"
#include "widgets/FloatingToolbar.h"

#include <algorithm>
#include <cmath>

namespace lumora {

namespace {

constexpr int iconLongerSide = 120;                 // pixels
constexpr int drawnLongerSide = 2 * iconLongerSide; // of icons, so that they show fine lines smoothly

QString keyOf(int n) {
    return QStringLiteral("keyFrame%1").arg(n);
}

bool isFrame(int n) {
    return n >= 1 && n <= frameCount;
}

QImage withLongerSide(const QImage &picture, int pixels) {
    const auto following = [pixels](int side, int other) {
        return std::max(1, static_cast<int>(std::lround(static_cast<double>(side) * pixels / other)));
    };
    const int width = picture.width();
    const int height = picture.height();
    return height <= width ? scaled(picture, pixels, following(height, width))
                           : scaled(picture, following(width, height), pixels);
}

} // namespace

Frames::Frames(AppContext &ctx, FloatingToolbar *FT5, QObject *parent) : QObject(parent), m_ctx(ctx), m_FT5(FT5) {
    connect(&m_turn, &QTimer::timeout, this, &Frames::nextThumbnail);
}

bool Frames::pick(const QString &key) {
    for (int n = 1; n <= frameCount; ++n) {
        if (key == keyOf(n)) {
            return fFramePicture(n);
        }
    }
    return false;
}

bool Frames::fFramePicture(int n) {
    if (!isFrame(n) || m_ctx.photo.picCanvas().isNull()) {
        return true;
    }
    QImage picFrame1;
    if (!m_ctx.tasks.run([&] { picFrame1 = FrameArtwork::around(n, m_ctx.photo.picThumb()); }, Stopping::Offered)) {
        return true;
    }
    if (!m_ctx.photo.changePhoto(picFrame1)) {
        return false;
    }
    m_ctx.photo.ResizePicCanvas();
    return true;
}

QImage Frames::fFrameThumbnail(int n) {
    const QImage pic2nd = m_ctx.photo.pic2nd();
    if (!isFrame(n) || pic2nd.isNull()) {
        return {};
    }
    const QImage photo = withLongerSide(pic2nd, drawnLongerSide);
    QImage &frame = m_iconFrames[std::size_t(n - 1)];
    if (frame.size() != photo.size()) {
        frame = FrameArtwork::picture(n, photo.size());
    }
    const QImage picFrame1 = FrameArtwork::around(n, photo, frame);
    QImage shown = withLongerSide(picFrame1.isNull() ? photo : picFrame1, iconLongerSide);
    m_FT5->setItemPicture(keyOf(n), QPixmap::fromImage(shown));
    return shown;
}

void Frames::CreateFrameThumbnails() {
    m_nextThumbnail = 1;
    m_turn.start(0);
}

void Frames::nextThumbnail() {
    if (m_ctx.tasks.isRunning()) {
        return; // long work goes first
    }
    if (m_nextThumbnail > frameCount) {
        m_turn.stop();
        return;
    }
    fFrameThumbnail(m_nextThumbnail++);
}

} // namespace lumora
