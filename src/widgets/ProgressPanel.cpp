#include "widgets/ProgressPanel.h"

#include "widgets/Theme.h"

#include <QPainter>
#include <QVBoxLayout>

namespace lumora {

namespace {

constexpr int tick = 30;   // milliseconds
constexpr int period = 60; // ticks to and fro
constexpr int barWidth = 320;
constexpr int barHeight = 18;
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
    painter.setBrush(colours::parchment);
    painter.drawRoundedRect(trough, radius, radius);
    const double there = 1.0 - qAbs(2.0 * m_step / period - 1.0);
    const double width = trough.width() * strokeShare;
    painter.setPen(Qt::NoPen);
    painter.setBrush(colours::sky);
    painter.drawRoundedRect(
        QRectF(trough.left() + there * (trough.width() - width), trough.top(), width, trough.height())
            .adjusted(3, 3, -3, -3),
        radius, radius);
}

ProgressPanel::ProgressPanel(QWidget *window) : QWidget(window) {
    setObjectName("pnlProgress");
    auto *column = new QVBoxLayout(this);
    const int margin = shadowMargin + 22;
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(14);
    auto *label = new QLabel(this);
    label->setObjectName("lblProgress");
    label->setAlignment(Qt::AlignCenter);
    column->addWidget(label);
    column->addWidget(new BusyBar(this), 0, Qt::AlignHCenter);
    hide();
}

void ProgressPanel::begin() {
    adjustSize();
    move(parentWidget()->rect().center() - rect().center());
    raise();
    show();
}

void ProgressPanel::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    const QRectF panel = QRectF(rect()).adjusted(shadowMargin, shadowMargin, -shadowMargin, -shadowMargin);
    paintSoftShadow(painter, panel, panelCorner);
    paintPanel(painter, panel, panelCorner);
}

} // namespace lumora
