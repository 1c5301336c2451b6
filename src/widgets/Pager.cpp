#include "widgets/Pager.h"

#include "widgets/PictureButton.h"
#include "widgets/Theme.h"

#include <QEvent>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

namespace lumora {

namespace {

constexpr int arrowHeight = smallestButton; // pixels
constexpr int step = 60;                    // pixels that one press of an arrow scrolls

} // namespace

Pager::Pager(const QString &name, QWidget *parent)
    : QWidget(parent), m_area(new QScrollArea(this)), m_up(arrow("cmdPageUp", "up", -1)),
      m_down(arrow("cmdPageDown", "down", 1)) {
    setObjectName(name);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(m_up);
    column->addWidget(m_area, 1);
    column->addWidget(m_down);
    m_area->setFrameShape(QFrame::NoFrame);
    m_area->setWidgetResizable(true);
    m_area->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_area->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_area->setFocusPolicy(Qt::NoFocus);
    m_area->viewport()->setAutoFillBackground(false);
    const QScrollBar *bar = m_area->verticalScrollBar();
    connect(bar, &QScrollBar::valueChanged, this, &Pager::refreshArrows);
    connect(bar, &QScrollBar::rangeChanged, this, &Pager::refreshArrows);
    refreshArrows();
}

PictureButton *Pager::arrow(const QString &name, const QString &iconName, int direction) {
    auto *button = new PictureButton(iconName, PictureButton::CaptionPlace::None, this);
    button->setObjectName(name);
    button->setPictureSize(24);
    button->setFixedHeight(arrowHeight);
    button->setAutoRepeat(true);
    button->setFocusPolicy(Qt::NoFocus); // the column's own buttons scroll into view as they take the focus
    connect(button, &QAbstractButton::clicked, this, [this, direction] { scrollTo(offset() + direction * step); });
    return button;
}

void Pager::setWidget(QWidget *column) {
    m_area->setWidget(column);
    column->setAutoFillBackground(false);
    column->installEventFilter(this);
    refreshArrows();
}

QWidget *Pager::widget() const {
    return m_area->widget();
}

int Pager::offset() const {
    return m_area->verticalScrollBar()->value();
}

void Pager::scrollTo(int pixels) {
    m_area->verticalScrollBar()->setValue(pixels);
}

void Pager::ensureVisible(QWidget *part) {
    m_area->ensureWidgetVisible(part, 0, 8);
}

QSize Pager::sizeHint() const {
    return widget() ? widget()->minimumSize().expandedTo(widget()->minimumSizeHint()) : QWidget::sizeHint();
}

void Pager::resizeEvent(QResizeEvent *event) {
    QWidget::resizeEvent(event);
    refreshArrows();
}

bool Pager::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::LayoutRequest || event->type() == QEvent::Resize) {
        refreshArrows();
    }
    return QWidget::eventFilter(watched, event);
}

void Pager::refreshArrows() {
    // Judged by the whole pager's height, not by what the arrows leave: else they would flicker on and off.
    const bool paging = widget() && sizeHint().height() > height();
    m_up->setVisible(paging);
    m_down->setVisible(paging);
    const QScrollBar *bar = m_area->verticalScrollBar();
    m_up->setEnabled(bar->value() > bar->minimum());
    m_down->setEnabled(bar->value() < bar->maximum());
}

} // namespace lumora
