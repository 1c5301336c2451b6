// The eight frames of the list FT5: around the photo, and around the small copies of it that the list shows. The main
// window forwards the list's clicks here.
#pragma once

#include "effects/FrameArtwork.h"

#include <QImage>
#include <QObject>
#include <QString>
#include <QTimer>
#include <array>

namespace lumora {

struct AppContext;
class FloatingToolbar;

class Frames : public QObject {
    Q_OBJECT

  public:
    /// Sets the pictures of the items keyFrame1 to keyFrame8 of FT5.
    Frames(AppContext &ctx, FloatingToolbar *FT5, QObject *parent = nullptr);

    /// An item of FT5 was picked: frames the photo. False for an unknown key and when
    /// fFramePicture returns false.
    bool pick(const QString &key);

    /// Puts frame n (1 to 8) around the whole photo as one undo step; the photo keeps its size, the selection stays.
    /// Does nothing without a photo or for other numbers, and when the user stops it. Returns false when memory
    /// allocation fails: the photo then keeps its pixels.
    bool fFramePicture(int n);

    /// The icon of frame n (1 to 8): the reduced photo in that frame, unframed when memory allocation fails, with a
    /// longer side of 120 pixels. Shows it in FT5 and returns it; null without a photo and for other numbers. The frame
    /// is drawn again only when the proportions of the photo have changed.
    QImage fFrameThumbnail(int n);
    /// All eight icons, one per event loop iteration, because drawing a frame is slow.
    void CreateFrameThumbnails();

  private:
    void nextThumbnail();

    AppContext &m_ctx;
    FloatingToolbar *m_FT5;
    std::array<QImage, frameCount> m_iconFrames; ///< PF1 to PF8 for icons, all of one size
    QTimer m_turn;
    int m_nextThumbnail = 1;
};

} // namespace lumora
