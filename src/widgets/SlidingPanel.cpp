#include "widgets/SlidingPanel.h"

#include "widgets/ElidedLabel.h"
#include "widgets/PanelDragger.h"
#include "widgets/PictureButton.h"
#include "widgets/Theme.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QPainterPath>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

namespace lumora {

namespace {
constexpr int narrowWindow = 1000; // pixels
} // namespace

SlidingPanel::SlidingPanel(const QString &name, const QString &closeButtonName, QWidget *window)
    : QWidget(window), m_title(new ElidedLabel(Qt::ElideRight, this)),
      m_close(new PictureButton("close", PictureButton::CaptionPlace::None, this)), m_head(new QHBoxLayout),
      m_body(new QVBoxLayout) {
    setObjectName(name);
    QFont bold = m_title->font();
    bold.setBold(true);
    bold.setPointSizeF(14);
    m_title->setFont(bold);
    m_close->setObjectName(closeButtonName);
    m_close->setPictureSize(closePicture);
    m_head->addWidget(m_title, 1);
    m_head->addWidget(m_close);
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(24, shadowMargin + 8, 16, 16);
    column->setSpacing(8);
    column->addLayout(m_head);
    column->addLayout(m_body, 1);
    m_timer.setInterval(interval);
    connect(&m_timer, &QTimer::timeout, this, &SlidingPanel::tick);
    connect(m_close, &QAbstractButton::clicked, this, [this] {
        slideOut();
        Q_EMIT left();
    });
    m_title->setCursor(Qt::OpenHandCursor);
    PanelDragger::install(this, {0, shadowMargin, 0, 0});
    hide();
}

void SlidingPanel::setButtonSide(int side) {
    for (PictureButton *button : findChildren<PictureButton *>()) {
        button->setLeastSide(side);
    }
}

void SlidingPanel::addCompareButton() {
    m_compare = new PictureButton("compare", PictureButton::CaptionPlace::Beside, this);
    m_compare->setObjectName("cmdCompare");
    m_compare->setLook(PictureButton::Look::Raised);
    m_compare->setPictureSize(32);
    m_compare->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed); // its caption is never cut
    m_head->insertWidget(1, m_compare);
    m_head->insertSpacing(2, 12);
}

void SlidingPanel::setArea(const QRect &area) {
    m_area = area;
    if (m_open) {
        place(m_timer.isActive() ? qMax(y(), targetTop()) : targetTop());
    }
}

int SlidingPanel::targetTop() const {
    const int bottom = m_area.isNull() ? parentWidget()->height() : m_area.bottom() + 1;
    return bottom - sizeHint().height();
}

void SlidingPanel::place(int top) {
    const QRect area = m_area.isNull() ? parentWidget()->rect() : m_area;
    const QRect all = parentWidget()->contentsRect();
    if (m_scroll == nullptr && minimumSizeHint().width() > all.width()) {
        makeScroll();
    }
    if (m_scroll != nullptr) {
        m_scroll->setFixedHeight(m_scroll->widget()->sizeHint().height() +
                                 m_scroll->horizontalScrollBar()->sizeHint().height());
    }
    // In a narrow window it also covers what is beside its area, where it needs that.
    const int wanted = all.width() < narrowWindow ? sizeHint().width() : minimumSizeHint().width();
    const int width = qBound(area.width(), wanted, qMax(area.width(), all.width()));
    int left = isRightToLeft() ? area.left() : area.right() + 1 - width;
    left = qBound(all.left(), left, all.right() + 1 - width);
    setGeometry(left, top, width, sizeHint().height());
}

void SlidingPanel::makeScroll() {
    auto *column = static_cast<QVBoxLayout *>(layout());
    column->removeItem(m_body);
    auto *sheet = new QWidget;
    sheet->setLayout(m_body);
    m_scroll = new QScrollArea(this);
    m_scroll->setFrameShape(QFrame::NoFrame);
    m_scroll->setWidgetResizable(true);
    m_scroll->setFocusPolicy(Qt::NoFocus);
    m_scroll->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_scroll->setWidget(sheet);
    sheet->setAutoFillBackground(false);
    m_scroll->viewport()->setAutoFillBackground(false);
    column->addWidget(m_scroll, 1);
    column->activate();
}

void SlidingPanel::slideIn() {
    if (!m_open) {
        m_open = true;
        place(parentWidget()->height());
        show();
    }
    raise();
    if (!motionWanted()) {
        place(targetTop());
    }
    m_timer.start();
}

void SlidingPanel::tick() {
    const int target = targetTop();
    if (y() - twips(stepTwips) > target) {
        place(y() - twips(stepTwips));
        return;
    }
    place(target);
    m_timer.stop();
    Q_EMIT opened();
}

void SlidingPanel::slideOut() {
    m_timer.stop();
    if (!m_open) {
        return;
    }
    m_open = false;
    hide();
    place(parentWidget()->height());
    Q_EMIT closed();
}

void SlidingPanel::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    // Only the upper edge shows; the lower corners are below the panel's own edge, unless it was dragged up.
    const bool lifted = m_open && !m_timer.isActive() && y() < targetTop();
    const QRectF panel = QRectF(rect()).adjusted(0, shadowMargin, 0, lifted ? 0 : panelCorner);
    paintSoftShadow(painter, panel, panelCorner);
    paintPanel(painter, panel, panelCorner);
}

void SlidingPanel::keyPressEvent(QKeyEvent *event) {
    if (event->key() == Qt::Key_Escape) {
        m_close->click();
        return;
    }
    QWidget::keyPressEvent(event);
}

} // namespace lumora
