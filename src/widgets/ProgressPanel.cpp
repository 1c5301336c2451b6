#include "widgets/ProgressPanel.h"

#include "widgets/PictureButton.h"
#include "widgets/Theme.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QVBoxLayout>

namespace lumora {

namespace {

constexpr int tick = 30;   // milliseconds
constexpr int period = 60; // ticks to and fro
constexpr int barWidth = 360;
constexpr int barHeight = 22;
constexpr int buttonPicture = 40;   // pixels
constexpr double strokeShare = 0.3; // of the bar

} // namespace

BusyBar::BusyBar(QWidget *parent) : QWidget(parent) {
    setObjectName("pBar1");
    setFixedSize(barWidth, barHeight);
    m_timer.setInterval(tick);
    connect(&m_timer, &QTimer::timeout, this, [this] {
        m_step = (m_step + 1) % period;
        update();
    });
}

void BusyBar::setPercent(int percent) {
    m_percent = percent;
    update();
}

void BusyBar::showEvent(QShowEvent *) {
    m_step = 0;
    m_timer.start(); // also where less motion is wanted: it says that the program is alive
}

void BusyBar::hideEvent(QHideEvent *) {
    m_timer.stop();
}

void BusyBar::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF trough = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    const double radius = trough.height() / 2;
    painter.setPen(colours::line);
    painter.setBrush(colours::paper);
    painter.drawRoundedRect(trough, radius, radius);
    const QRectF groove = trough.adjusted(3, 3, -3, -3);
    painter.setPen(Qt::NoPen);
    if (m_percent >= 0) {
        const double width = groove.height() + (groove.width() - groove.height()) * m_percent / 100;
        painter.setBrush(colours::leaf);
        painter.drawRoundedRect(QRectF(groove.topLeft(), QSizeF(width, groove.height())), radius, radius);
        return;
    }
    const double there = 1.0 - qAbs(2.0 * m_step / period - 1.0);
    const double width = groove.width() * strokeShare;
    painter.setBrush(colours::sky);
    painter.drawRoundedRect(
        QRectF(groove.left() + there * (groove.width() - width), groove.top(), width, groove.height()), radius, radius);
}

ProgressPanel::ProgressPanel(QWidget *window)
    : QWidget(window), m_bar(new BusyBar(this)),
      cmdStop(new PictureButton("cancel", PictureButton::CaptionPlace::Beside, this)) {
    setObjectName("pnlProgress");
    auto *column = new QVBoxLayout(this);
    const int margin = shadowMargin + 26;
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(18);
    column->setSizeConstraint(QLayout::SetFixedSize);
    auto *label = new QLabel(this);
    label->setObjectName("lblProgress");
    label->setAlignment(Qt::AlignCenter);
    QFont large = label->font();
    large.setPointSizeF(15);
    label->setFont(large);
    column->addWidget(label);
    column->addWidget(m_bar, 0, Qt::AlignHCenter);
    cmdStop->setObjectName("cmdStop");
    cmdStop->setLook(PictureButton::Look::Raised);
    cmdStop->setPictureSize(buttonPicture);
    cmdStop->setFont(large);
    cmdStop->installEventFilter(this);
    column->addWidget(cmdStop, 0, Qt::AlignHCenter);
    connect(cmdStop, &PictureButton::clicked, this, &ProgressPanel::stopWanted);
    hide();
}

void ProgressPanel::begin(bool canBeStopped) {
    m_bar->setPercent(-1);
    cmdStop->setVisible(canBeStopped);
    layout()->activate();
    settle();
    raise();
    show();
    m_hadKeyboard = window()->focusWidget();
    cmdStop->setFocus(Qt::OtherFocusReason);
}

void ProgressPanel::setPlace(Place place) {
    m_place = place;
    settle();
}

void ProgressPanel::settle() {
    QPoint at = parentWidget()->rect().center() - rect().center();
    if (m_place == Place::Corner) {
        const bool mirrored = layoutDirection() == Qt::RightToLeft;
        at = QPoint(mirrored ? parentWidget()->width() - width() : 0, parentWidget()->height() - height());
    }
    move(at);
}

void ProgressPanel::setPercent(int percent) {
    m_bar->setPercent(percent);
    setVisible(percent < 100); // what is left then is not the user's to stop
}

void ProgressPanel::end() {
    hide();
    if (m_hadKeyboard) {
        m_hadKeyboard->setFocus(Qt::OtherFocusReason);
    }
}

bool ProgressPanel::event(QEvent *event) {
    if (event->type() == QEvent::ShortcutOverride) {
        event->accept(); // no key is the window's while the panel shows
        return true;
    }
    return QWidget::event(event);
}

bool ProgressPanel::eventFilter(QObject *watched, QEvent *event) {
    // A key that has been held since before the panel came was not meant for it.
    const bool isKey = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
    return (isKey && static_cast<QKeyEvent *>(event)->isAutoRepeat()) || QWidget::eventFilter(watched, event);
}

void ProgressPanel::keyPressEvent(QKeyEvent *event) {
    if (event->key() == Qt::Key_Escape && cmdStop->isVisible()) {
        Q_EMIT stopWanted();
    }
}

void ProgressPanel::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    const QRectF panel = QRectF(rect()).adjusted(shadowMargin, shadowMargin, -shadowMargin, -shadowMargin);
    paintSoftShadow(painter, panel, panelCorner);
    paintPanel(painter, panel, panelCorner);
}

} // namespace lumora
