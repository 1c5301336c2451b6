#include "tools/select/AgainButton.h"

#include "view/PhotoView.h"
#include "widgets/Theme.h"

#include <QPainter>

namespace lumora {

namespace {

using Shape = PhotoSelection::Shape;

constexpr int againMargin = 16; // pixels to the view's edge
constexpr int againPicture = 56;
constexpr double againLetters = 14; // points
constexpr double arrowPart = 0.6;   // of the picture

const char *againIcon(Shape shape) {
    return shape == Shape::Lasso ? "tool2-lasso" : shape == Shape::Ellipse ? "tool2-ellipse" : "tool2-rectangle";
}

} // namespace

// A child of the view and not of its viewport, whose children move with the photo.
AgainButton::AgainButton(PhotoView &view) : PictureButton("tool2", CaptionPlace::Beside, &view), m_view(view) {
    setObjectName("cmdSelectAgain");
    setLook(Look::Raised);
    setPictureSize(againPicture);
    QFont letters = font();
    letters.setPointSizeF(againLetters);
    setFont(letters);
    setFocusPolicy(Qt::TabFocus); // a click leaves the focus on the photo
    hide();
    connect(&view, &PhotoView::visiblePartChanged, this, &AgainButton::place);
}

void AgainButton::offer(Shape shape) {
    if (shape != Shape::None) {
        setIconName(againIcon(shape));
    }
    setVisible(shape != Shape::None);
}

void AgainButton::showEvent(QShowEvent *event) {
    PictureButton::showEvent(event);
    place();
}

void AgainButton::place() {
    const QRect room = m_view.viewport()->geometry().adjusted(againMargin, againMargin, -againMargin, -againMargin);
    QRect button(QPoint(), sizeHint());
    button.moveCenter({room.center().x(), 0});
    button.moveBottom(room.bottom());
    setGeometry(button);
    raise();
}

/// The shape, and over its corner the arrow of a repetition.
QPixmap AgainButton::currentPicture(QSize size, qreal devicePixelRatio) const {
    const int side = qMin(size.width(), size.height());
    const int arrow = qRound(side * arrowPart);
    QPixmap picture = iconPixmap(iconName(), side, devicePixelRatio);
    QPainter(&picture).drawPixmap(side - arrow, side - arrow, iconPixmap("redo", arrow, devicePixelRatio));
    return picture;
}

} // namespace lumora
