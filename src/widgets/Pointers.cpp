#include "widgets/Pointers.h"

#include "widgets/Theme.h"

#include <QApplication>
#include <QPixmap>
#include <QPointer>
#include <QTransform>
#include <QWidget>
#include <algorithm>

namespace lumora {

namespace {

constexpr int usualPointer = 32; // pixels of a drawing, as large as the system's pointers
constexpr int largeScale = 2;
constexpr char shapeProperty[] = "pointerShape"; // what a widget has asked for; -1 for nothing
constexpr char ownProperty[] = "pointerDrawing"; // the key of the drawing that it got instead

struct PointerRow {
    Qt::CursorShape shape;
    const char *drawing;
    QPoint hotSpot; ///< on a grid of 32
    int turned = 0; ///< degrees
};

constexpr PointerRow pointerRows[] = {
    {Qt::ArrowCursor, "arrow", {7, 3}},           {Qt::PointingHandCursor, "pointing", {13, 4}},
    {Qt::IBeamCursor, "beam", {16, 16}},          {Qt::CrossCursor, "cross", {16, 16}},
    {Qt::OpenHandCursor, "hand-open", {15, 17}},  {Qt::ClosedHandCursor, "hand-closed", {15, 17}},
    {Qt::SizeAllCursor, "move", {16, 16}},        {Qt::SizeHorCursor, "size", {16, 16}},
    {Qt::SizeVerCursor, "size", {16, 16}, 90},    {Qt::SizeFDiagCursor, "size", {16, 16}, 45},
    {Qt::SizeBDiagCursor, "size", {16, 16}, -45},
};

/// Replaces the pointer of each widget that sets one, and the arrow of each window.
class LargePointers : public QObject {
  public:
    explicit LargePointers(QObject *parent) : QObject(parent) {
        qApp->installEventFilter(this);
        for (QWidget *widget : QApplication::allWidgets()) {
            enlarge(*widget);
        }
    }

    void giveBack() {
        qApp->removeEventFilter(this);
        for (QWidget *widget : QApplication::allWidgets()) {
            const QVariant shape = widget->property(shapeProperty);
            if (!shape.isValid()) {
                continue;
            }
            // It may have got a drawing of a tool since.
            const bool isOurs = widget->cursor().pixmap().cacheKey() == widget->property(ownProperty).toLongLong();
            widget->setProperty(shapeProperty, QVariant());
            if (isOurs && shape.toInt() >= 0) {
                widget->setCursor(static_cast<Qt::CursorShape>(shape.toInt()));
            } else if (isOurs) {
                widget->unsetCursor();
            }
        }
    }

  protected:
    bool eventFilter(QObject *watched, QEvent *event) override {
        const bool mayBeOther = event->type() == QEvent::CursorChange || event->type() == QEvent::Show;
        if (mayBeOther && !m_isChanging && watched->isWidgetType()) {
            enlarge(*static_cast<QWidget *>(watched));
        }
        return QObject::eventFilter(watched, event);
    }

  private:
    void enlarge(QWidget &widget) {
        const bool isSet = widget.testAttribute(Qt::WA_SetCursor);
        if (!isSet && !widget.isWindow()) {
            return; // its parent's
        }
        const Qt::CursorShape shape = isSet ? widget.cursor().shape() : Qt::ArrowCursor;
        const bool isKnown = std::ranges::find(pointerRows, shape, &PointerRow::shape) != std::end(pointerRows);
        if (!isKnown) { // a tool's own, or none at all
            if (shape != Qt::BitmapCursor) {
                widget.setProperty(shapeProperty, QVariant());
            }
            return;
        }
        widget.setProperty(shapeProperty, isSet ? static_cast<int>(shape) : -1);
        m_isChanging = true;
        const QCursor large = largePointer(shape, widget.devicePixelRatioF());
        widget.setProperty(ownProperty, large.pixmap().cacheKey());
        widget.setCursor(large);
        m_isChanging = false;
    }

    bool m_isChanging = false;
};

QPointer<LargePointers> largePointers; // while they are wanted

} // namespace

void setLargePointers(bool large) {
    if (large && largePointers.isNull()) {
        largePointers = new LargePointers(qApp);
    } else if (!large && !largePointers.isNull()) {
        largePointers->giveBack();
        delete largePointers;
    }
}

int pointerScale() {
    return largePointers.isNull() ? 1 : largeScale;
}

QCursor largePointer(Qt::CursorShape shape, qreal devicePixelRatio) {
    const auto *row = std::ranges::find(pointerRows, shape, &PointerRow::shape);
    if (row == std::end(pointerRows)) {
        return shape;
    }
    const int side = usualPointer * largeScale;
    QPixmap picture = iconPixmap(QString(":/cursors/%1.svg").arg(row->drawing), side, devicePixelRatio);
    if (row->turned != 0) {
        const int pixels = picture.width();
        QPixmap turned = picture.transformed(QTransform().rotate(row->turned), Qt::SmoothTransformation);
        picture = turned.copy((turned.width() - pixels) / 2, (turned.height() - pixels) / 2, pixels, pixels);
        picture.setDevicePixelRatio(devicePixelRatio);
    }
    return QCursor(picture, row->hotSpot.x() * largeScale, row->hotSpot.y() * largeScale);
}

} // namespace lumora
