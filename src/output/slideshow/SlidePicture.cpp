#include "output/slideshow/SlidePicture.h"

#include "widgets/Accessibility.h"
#include "widgets/Motion.h"

#include <QApplication>
#include <QMouseEvent>
#include <QPainter>
#include <QTimer>
#include <QVariantAnimation>

namespace lumora {

namespace {

constexpr int changeTime = 250;   // milliseconds
constexpr int pointerTime = 2000; // milliseconds without movement until the pointer is hidden

} // namespace

SlidePicture::SlidePicture(QWidget *parent)
    : QWidget(parent), m_change(new QVariantAnimation(this)), tmrPointer(new QTimer(this)) {
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    setAccessibleRole(*this, QAccessible::Graphic);
    m_change->setDuration(changeTime);
    m_change->setStartValue(0.0);
    m_change->setEndValue(1.0);
    connect(m_change, &QVariantAnimation::valueChanged, this, qOverload<>(&QWidget::update));
    connect(m_change, &QVariantAnimation::finished, this, [this] {
        m_before = {};
        Q_EMIT changed();
    });
    tmrPointer->setObjectName("tmrPointer");
    tmrPointer->setSingleShot(true);
    tmrPointer->setInterval(pointerTime);
    connect(tmrPointer, &QTimer::timeout, this, [this] { setCursor(Qt::BlankCursor); });
}

void SlidePicture::setBackColor(const QColor &colour) {
    QPalette colours = palette();
    colours.setColor(QPalette::Window, colour);
    setPalette(colours);
}

QColor SlidePicture::backColor() const {
    return palette().color(QPalette::Window);
}

void SlidePicture::setPicture(const QImage &picture) {
    m_change->stop();
    m_before = motionWanted() ? m_picture : QImage();
    m_picture = picture;
    update();
    if (motionWanted()) {
        m_change->start();
    } else {
        Q_EMIT changed();
    }
}

QSize SlidePicture::room() const {
    return (QSizeF(size()) * devicePixelRatioF()).toSize();
}

QRect SlidePicture::placeOf(const QImage &picture) const {
    const QSize all = room();
    const bool fits = picture.width() == all.width() || picture.height() == all.height();
    const QSize shown = fits && picture.size().boundedTo(all) == picture.size()
                            ? picture.size()
                            : picture.size().scaled(all, Qt::KeepAspectRatio);
    return {(all.width() - shown.width()) / 2, (all.height() - shown.height()) / 2, shown.width(), shown.height()};
}

void SlidePicture::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.fillRect(rect(), backColor());
    painter.scale(1 / devicePixelRatioF(), 1 / devicePixelRatioF());
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const auto paint = [&](const QImage &picture, double share) {
        if (!picture.isNull() && share > 0) {
            painter.setOpacity(share);
            painter.drawImage(placeOf(picture), picture);
        }
    };
    if (m_change->state() != QAbstractAnimation::Running) {
        paint(m_picture, 1);
        return;
    }
    // The sum of both on black is a true cross-fade where they overlap and where they do not.
    const double share = m_change->currentValue().toDouble();
    paint(m_before, 1 - share);
    painter.setCompositionMode(QPainter::CompositionMode_Plus);
    paint(m_picture, share);
}

void SlidePicture::showEvent(QShowEvent *event) {
    QWidget::showEvent(event);
    m_shown.start();
    m_pointer = QCursor::pos();
    showPointer();
}

void SlidePicture::showPointer() {
    setCursor(Qt::ArrowCursor);
    tmrPointer->start();
}

void SlidePicture::mouseMoveEvent(QMouseEvent *event) {
    // A window that appears or changes below a resting pointer gets moves too.
    const QPoint place = event->globalPosition().toPoint();
    if (place != m_pointer) {
        m_pointer = place;
        showPointer();
    }
}

void SlidePicture::mousePressEvent(QMouseEvent *event) {
    // Who double-clicks in the folder dialog would end the show with the second click.
    const bool isLate = m_shown.hasExpired(QApplication::doubleClickInterval());
    m_isPressed = event->button() == Qt::LeftButton && isLate;
}

void SlidePicture::mouseReleaseEvent(QMouseEvent *event) {
    if (event->button() == Qt::LeftButton && m_isPressed) {
        m_isPressed = false;
        Q_EMIT clicked();
    }
}

} // namespace lumora
