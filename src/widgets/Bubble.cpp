#include "widgets/Bubble.h"

#include "widgets/Accessibility.h"
#include "widgets/PictureButton.h"
#include "widgets/Theme.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPainterPath>
#include <QVBoxLayout>

namespace lumora {

namespace {

constexpr int beakHalf = 12;               // half of the beak's foot, pixels
constexpr int textWidth = 280;             // pixels
constexpr int narrowText = 140;            // pixels
static_assert(beakLength <= shadowMargin); // the beak is within it

} // namespace

void paintBubble(QPainter &painter, const QRectF &panel, BubbleSide side, QPointF tip) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    paintSoftShadow(painter, panel, panelCorner);
    QPainterPath shape;
    shape.addRoundedRect(panel.adjusted(1, 1, -1, -1), panelCorner, panelCorner);
    const bool upright = side == BubbleSide::Top || side == BubbleSide::Bottom;
    const QPointF along = upright ? QPointF(beakHalf, 0) : QPointF(0, beakHalf);
    const QPointF inward = side == BubbleSide::Top      ? QPointF(0, 1)
                           : side == BubbleSide::Bottom ? QPointF(0, -1)
                           : side == BubbleSide::Left   ? QPointF(1, 0)
                                                        : QPointF(-1, 0);
    const QPointF foot = tip + inward * (beakLength + 6);
    QPainterPath beak;
    beak.addPolygon(QPolygonF({tip, foot + along, foot - along, tip}));
    painter.setPen(QPen(colours::litEdge, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(colours::paper);
    painter.drawPath(shape.united(beak));
    painter.restore();
}

Bubble::Bubble(const QString &name, QWidget *window)
    : QWidget(window), m_label(new QLabel(this)), m_body(new QVBoxLayout), m_buttons(new QHBoxLayout) {
    setObjectName(name);
    setAccessibleRole(*this, QAccessible::Grouping);
    m_label->setWordWrap(true);
    m_label->setTextFormat(Qt::PlainText);
    auto *column = new QVBoxLayout(this);
    const int margin = shadowMargin + 16;
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(10);
    column->addWidget(m_label);
    column->addLayout(m_body);
    column->addLayout(m_buttons);
    m_buttons->addStretch(1);
    window->installEventFilter(this);
    hide();
}

void Bubble::setText(const QString &text) {
    m_label->setText(text);
    setAccessibleName(text);
}

PictureButton *Bubble::addButton(const QString &objectName, const QString &iconName) {
    auto *button = new PictureButton(iconName, PictureButton::CaptionPlace::Beside, this);
    button->setObjectName(objectName);
    button->setLook(PictureButton::Look::Raised);
    m_buttons->addWidget(button);
    return button;
}

void Bubble::pointAt(QWidget *target) {
    m_target = target;
    settle();
    show();
    raise();
}

void Bubble::layInRow() {
    m_inRow = true;
    auto *row = static_cast<QBoxLayout *>(layout());
    row->setDirection(QBoxLayout::LeftToRight);
    row->setContentsMargins(shadowMargin + 16, shadowMargin + 8, shadowMargin + 16, shadowMargin + 8);
    row->setSpacing(20);
}

Bubble::Side Bubble::sideFor(const QRect &target) const {
    if (m_inRow) {
        return layoutDirection() == Qt::RightToLeft ? Side::Right : Side::Left;
    }
    const QRect window = parentWidget()->rect();
    const QPoint middle = target.center();
    if (middle.y() < window.height() / 4) {
        return Side::Top;
    }
    // A column of buttons at the window's side stays in view when the bubble is beside it.
    if (middle.x() < window.width() / 4) {
        return Side::Left;
    }
    if (middle.x() > window.width() * 3 / 4) {
        return Side::Right;
    }
    return target.top() >= height() ? Side::Bottom : Side::Top;
}

void Bubble::settle() {
    if (!m_target || !m_target->window()->isAncestorOf(this)) {
        return;
    }
    const QRect target(m_target->mapTo(parentWidget(), QPoint(0, 0)), m_target->size());
    int widest = textWidth;
    if (m_inRow) {
        const bool rightToLeft = layoutDirection() == Qt::RightToLeft;
        const int free = rightToLeft ? target.left() : parentWidget()->width() - target.right();
        widest = qBound(narrowText, free - (sizeHint().width() - m_label->width()), textWidth);
    }
    m_label->setFixedWidth(qMin(widest, m_label->fontMetrics().horizontalAdvance(m_label->text()) + 4));
    const int height = layout()->hasHeightForWidth() ? layout()->totalHeightForWidth(layout()->totalSizeHint().width())
                                                     : sizeHint().height();
    resize(sizeHint().width(), height);
    m_side = sideFor(target);
    const QPoint middle = target.center();
    QPoint tip; // in the window
    QPoint corner;
    const int overlap = shadowMargin - beakLength;
    switch (m_side) {
    case Side::Top:
        tip = {middle.x(), target.bottom() + 1};
        corner = {middle.x() - width() / 2, tip.y() - overlap};
        break;
    case Side::Bottom:
        tip = {middle.x(), target.top()};
        corner = {middle.x() - width() / 2, tip.y() - this->height() + overlap};
        break;
    case Side::Left:
        tip = {target.right() + 1, middle.y()};
        corner = {tip.x() - overlap, middle.y() - this->height() / 2};
        break;
    case Side::Right:
        tip = {target.left(), middle.y()};
        corner = {tip.x() - width() + overlap, middle.y() - this->height() / 2};
        break;
    }
    const QSize room = parentWidget()->size();
    const int out = shadowMargin - 6; // the shadow may be cut, the panel not
    corner.setX(qBound(-out, corner.x(), qMax(-out, room.width() + out - width())));
    corner.setY(qBound(-out, corner.y(), qMax(-out, room.height() + out - this->height())));
    move(corner);
    const int nearest = shadowMargin + panelCorner + beakHalf;
    m_tip = tip - corner;
    if (m_side == Side::Top || m_side == Side::Bottom) {
        m_tip.setX(qBound(nearest, m_tip.x(), qMax(nearest, width() - nearest)));
    } else {
        m_tip.setY(qBound(nearest, m_tip.y(), qMax(nearest, this->height() - nearest)));
    }
    update();
}

void Bubble::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    const QRectF panel = QRectF(rect()).adjusted(shadowMargin, shadowMargin, -shadowMargin, -shadowMargin);
    paintBubble(painter, panel, m_side, m_tip);
}

void Bubble::closeEvent(QCloseEvent *event) {
    QWidget::closeEvent(event);
    Q_EMIT closed();
}

bool Bubble::event(QEvent *event) {
    const bool done = QWidget::event(event);
    if (event->type() == QEvent::LayoutRequest && isVisible()) {
        settle();
    }
    return done;
}

bool Bubble::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::Resize && isVisible()) {
        settle();
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace lumora
