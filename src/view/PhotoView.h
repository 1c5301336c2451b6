// The photo on its table, as the main window shows it: paints what is exposed, scrolls, zooms and pans, and passes the
// pointer to tools in picture pixels.
#pragma once

#include "document/PhotoDocument.h"
#include "view/MipLevels.h"
#include "view/PhotoTable.h"

#include <QAbstractScrollArea>
#include <QCursor>
#include <QMouseEvent>
#include <memory>
#include <optional>

class QKeyEvent;
class QNativeGestureEvent;
class QTouchEvent;

namespace lumora {

enum class Sampling;

/// A mouse event over the photo's table that was not used for panning.
struct PointerEvent {
    enum class Kind { Press, Move, Release, DoubleClick };
    Kind kind = Kind::Move;
    QPointF picture; ///< picture pixels; outside the picture too
    QPointF view;    ///< the view's pixels
    Qt::MouseButton button = Qt::NoButton;
    Qt::MouseButtons buttons = Qt::NoButton;
    Qt::KeyboardModifiers modifiers = Qt::NoModifier;
};

/// One finger is a mouse: its press is told once it moves or is lifted. Until then a second one may come, and the photo
/// goes with both of them, larger and smaller, too. View coordinates are those of the viewport, in device-independent
/// pixels. The zoom counts these too, and painting uses every pixel of the device.
class PhotoView : public QAbstractScrollArea {
    Q_OBJECT

  public:
    explicit PhotoView(PhotoDocument &document, QWidget *parent = nullptr);

    /// Exact conversions between the view and the picture's pixels, also outside the photo.
    QPointF toPicture(QPointF viewPoint) const;
    QPointF toView(QPointF picturePoint) const;
    /// The picture pixel under a point of the view; outside the photo one that the picture does not have.
    QPoint pixelAt(QPointF viewPoint) const;
    /// The photo's rectangle in view coordinates; empty without a photo.
    QRectF photoRect() const;
    /// The inner size without scroll bars: what fitPhoto is given.
    QSize canvasSize() const { return maximumViewportSize(); }

    /// Sets the zoom in percent so that the picture stays where it is under that point of the view.
    void zoomAbout(QPointF viewPoint, int percent);

    /// The photo's pixels that are in view, cut to the photo, and the picture (the photo or a copy of it, reduced to
    /// 1/coarsest at most) that the view paints them from.
    QRect visiblePart() const;
    MipLevels::Level visibleLevel(double coarsest = 16);
    /// Paints `picture` in place of the photo's pixels in `part` (picture pixels; what of it is outside the photo is
    /// not painted), stretched to it just as the photo is, until cleared or until the photo itself changes. What a tool
    /// shows of a change that has not been made. A null picture or an empty part clears.
    void showPreview(const QImage &picture, const QRect &part);
    void clearPreview();
    /// Shows another picture in the photo's place, stretched to its size; a null one brings the photo back.
    void showInstead(const QImage &picture);
    /// Leaves the photo itself unpainted, for a tool that draws it in another shape on the overlay.
    void setPhotoHidden(bool hidden);
    /// The cursor over the view while the photo is not panned.
    void setToolCursor(const QCursor &cursor);

  Q_SIGNALS:
    /// Another part of the photo is in view, or at another size.
    void visiblePartChanged();
    /// Mouse over the table: what tools listen to.
    void pointer(const lumora::PointerEvent &event);
    /// A key, before the view or a shortcut of the window has it: QEvent::ShortcutOverride asks, QEvent::KeyPress is
    /// it. To use the key, accept both.
    void key(QKeyEvent &event);
    /// After the photo is painted: selections and grids draw on top, in view coordinates.
    void paintOverlay(QPainter &painter);

  protected:
    bool event(QEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;
    void showEvent(QShowEvent *event) override;
    bool viewportEvent(QEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void wheelEvent(QWheelEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void keyReleaseEvent(QKeyEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;

  private:
    /// A point of the picture that a change of zoom or size leaves where it is in the view.
    struct Anchor {
        QPointF picture;
        QPointF view;
    };

    void followDocument(PhotoChanges what);
    Anchor centre() const;
    Anchor photoCentre() const;
    void layOut(const Anchor &anchor);
    void placeOrigin();
    QRect inDevice(const QRect &exposed) const;
    Sampling sampling() const;
    void paintPhoto(QPainter &painter, const QRect &exposed);
    void paintPreview(QPainter &painter, const QRect &exposed);
    void paintInstead(QPainter &painter, const QRect &exposed) const;
    void paintPixels(QPainter &painter, QImage pixels, const QRect &part);
    void followFingers(const QTouchEvent &event);
    bool holdsBack(const QMouseEvent &event);
    void tellHeldPress();
    bool nativeGesture(const QNativeGestureEvent &event);
    void zoomByWheel(const QWheelEvent &event);
    void tellPointer(PointerEvent::Kind kind, const QMouseEvent &event);
    bool startPanning(const QMouseEvent &event);
    void showHand();

    PhotoDocument &m_document;
    MipLevels m_levels;
    PhotoTable m_table;

    QImage m_instead; ///< see showInstead
    QImage m_preview;
    QRect m_previewPart; ///< picture pixels
    bool m_photoHidden = false;
    QCursor m_toolCursor;

    // Where the photo is shown now, in device pixels.
    double m_scale = 1.0; ///< device pixels to a picture pixel
    QPoint m_origin;      ///< of the photo's top left corner
    QSize m_size;         ///< of the photo at this zoom

    std::optional<Anchor> m_anchor; ///< for the zoom that is being set
    double m_gestureZoom = 100.0;   ///< percent, unrounded while two fingers move
    /// What two fingers do: the point of the photo that was first between them, how far they were apart, the zoom.
    struct Pinch {
        QPointF picture;
        double distance;
        double zoom;
    };
    std::optional<Pinch> m_pinch;
    bool m_fingersUsed = false;               ///< for zooming, so that the one that is left does nothing
    std::unique_ptr<QMouseEvent> m_heldPress; ///< of a finger, not told yet
    int m_wheelRest = 0;                      ///< eighths of a degree not yet turned into a zoom step
    bool m_spaceDown = false;
    std::optional<QPoint> m_panFrom; ///< where the pointer last was while it drags the photo
    Qt::MouseButton m_panButton = Qt::NoButton;
};

} // namespace lumora
