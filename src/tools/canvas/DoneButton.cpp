#include "tools/canvas/DoneButton.h"

#include "view/PhotoView.h"

namespace lumora {

namespace {
constexpr int margin = 16; // pixels
} // namespace

// A child of the view and not of its viewport, whose children move with the photo.
DoneButton::DoneButton(const QString &name, PhotoView &view)
    : PictureButton("ok", CaptionPlace::Beside, &view), m_view(view) {
    setObjectName(name);
    setLook(Look::Raised);
    setFocusPolicy(Qt::TabFocus); // a click leaves the focus on the photo
    hide();
    connect(&view, &PhotoView::visiblePartChanged, this, &DoneButton::place);
}

void DoneButton::showEvent(QShowEvent *event) {
    PictureButton::showEvent(event);
    place();
}

void DoneButton::place() {
    const QRect room = m_view.viewport()->geometry().adjusted(margin, margin, -margin, -margin);
    QRect button(QPoint(), sizeHint());
    // Does not cover the handles at the corners and side centres of a frame as large as the view.
    button.moveCenter({room.left() + room.width() * 3 / 4, 0});
    button.moveBottom(room.bottom());
    setGeometry(button);
    raise();
}

} // namespace lumora
