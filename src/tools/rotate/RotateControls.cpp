#include "tools/rotate/RotateControls.h"

#include "view/PhotoView.h"
#include "widgets/Theme.h"
#include "widgets/TickButton.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QPainter>

namespace lumora {

namespace {

// pixels
constexpr int pictureSize = 36;
constexpr int padding = 8; // between the panel's edge and its buttons
constexpr int gap = 8;

} // namespace

// A child of the view and not of its viewport, whose children move with the photo.
RotateControls::RotateControls(PhotoView &view)
    : QWidget(&view), m_view(view),
      m_straighten(new PictureButton("straighten", PictureButton::CaptionPlace::Beside, this)),
      m_cutCorners(new TickButton("cut-corners", pictureSize, this)) {
    setObjectName("pnlRotate");
    m_straighten->setObjectName("cmdStraighten");
    m_straighten->setCheckable(true);
    m_cutCorners->setObjectName("chkCutCorners");
    auto *row = new QHBoxLayout(this);
    row->setContentsMargins(shadowMargin + padding, shadowMargin + padding, shadowMargin + padding,
                            shadowMargin + padding);
    row->setSpacing(gap);
    for (PictureButton *button : std::initializer_list<PictureButton *>{m_straighten, m_cutCorners}) {
        button->setLook(PictureButton::Look::Raised);
        button->setPictureSize(QSize(button->pictureSize().width(), pictureSize));
        button->setFocusPolicy(Qt::TabFocus); // a click leaves the focus on the photo
        row->addWidget(button);
    }
    hide();
    connect(&view, &PhotoView::visiblePartChanged, this, &RotateControls::place);
}

void RotateControls::showAtFirst() {
    m_straighten->setChecked(false);
    m_cutCorners->setChecked(false);
    show();
    place();
}

/// As wide as its captions need, if the view is; then they wrap.
void RotateControls::place() {
    const QRect room = m_view.viewport()->geometry();
    QRect panel(QPoint(), sizeHint());
    panel.setWidth(qMin(panel.width(), room.width()));
    panel.moveCenter(room.center());
    panel.moveBottom(room.bottom());
    setGeometry(panel);
    raise();
}

bool RotateControls::event(QEvent *event) {
    if (event->type() == QEvent::LayoutRequest && isVisible()) {
        place(); // a caption has changed
    }
    return QWidget::event(event);
}

void RotateControls::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    const QRectF panel = QRectF(rect()).adjusted(shadowMargin, shadowMargin, -shadowMargin, -shadowMargin);
    paintSoftShadow(painter, panel, panelCorner);
    paintPanel(painter, panel, panelCorner);
}

} // namespace lumora
