#include "widgets/BorderlessDialog.h"

#include "widgets/Compositing.h"
#include "widgets/Theme.h"
#include "widgets/TitleStrip.h"

#include <QBitmap>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QLabel>
#include <QPainter>
#include <QScreen>
#include <QVBoxLayout>
#include <algorithm>

namespace lumora {

namespace {

constexpr int border = 2; // pixels

} // namespace

BorderlessDialog::BorderlessDialog(const QString &name, QWidget *owner)
    : QDialog(owner, Qt::Dialog | Qt::FramelessWindowHint), m_translucent(translucencyWorks()),
      m_strip(new TitleStrip(this)), m_body(new QVBoxLayout) {
    setObjectName(name);
    setAttribute(Qt::WA_TranslucentBackground, m_translucent);
    const int margin = (m_translucent ? shadowMargin : 0) + border;
    auto *column = new QVBoxLayout(this);
    column->setContentsMargins(margin, margin, margin, margin);
    column->setSpacing(0);
    column->addWidget(m_strip);
    column->addLayout(m_body, 1);
    m_body->setContentsMargins(18, 14, 18, 18);
    m_body->setSpacing(12);
    connect(this, &QWidget::windowTitleChanged, m_strip->lblCaption(), &QLabel::setText);
}

QRect BorderlessDialog::surface() const {
    const int margin = m_translucent ? shadowMargin : 0;
    return rect().adjusted(margin, margin, -margin, -margin);
}

void BorderlessDialog::showEvent(QShowEvent *event) {
    if (windowTitle().isEmpty()) {
        setWindowTitle(m_strip->lblCaption()->text());
    }
    if (!event->spontaneous()) {
        settle();
    }
    QDialog::showEvent(event);
    activateWindow();
}

void BorderlessDialog::settle() {
    const QWidget *owner = parentWidget() ? parentWidget()->window() : nullptr;
    const bool ownerShown = owner && owner->isVisible() && !owner->isMinimized();
    const QScreen *screen = ownerShown ? owner->screen() : QGuiApplication::primaryScreen();
    // The shadow may leave the screen, the surface may not.
    const int shade = m_translucent ? shadowMargin : 0;
    const QRect room = screen->availableGeometry().adjusted(-shade, -shade, shade, shade);
    QRect place({}, sizeHint().boundedTo(room.size()).expandedTo(minimumSize()).boundedTo(maximumSize()));
    place.moveCenter(ownerShown ? owner->frameGeometry().center() : room.center());
    // What is larger than the screen keeps its title strip on it.
    place.moveLeft(std::max(room.left(), std::min(place.left(), room.right() + 1 - place.width())));
    place.moveTop(std::max(room.top(), std::min(place.top(), room.bottom() + 1 - place.height())));
    setGeometry(place);
}

void BorderlessDialog::resizeEvent(QResizeEvent *event) {
    QDialog::resizeEvent(event);
    if (!m_translucent) {
        QBitmap shape(size());
        shape.fill(Qt::color0);
        QPainter painter(&shape);
        painter.setPen(Qt::NoPen);
        painter.setBrush(Qt::color1);
        painter.drawRoundedRect(rect(), panelCorner, panelCorner);
        painter.end();
        setMask(shape);
    }
}

void BorderlessDialog::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    if (m_translucent) {
        paintSoftShadow(painter, surface(), panelCorner);
        paintPanel(painter, surface(), panelCorner, colours::parchment);
        return;
    }
    painter.fillRect(rect(), colours::faintInk);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colours::parchment);
    painter.drawRoundedRect(rect().adjusted(border, border, -border, -border), panelCorner - border,
                            panelCorner - border);
}

void BorderlessDialog::keyPressEvent(QKeyEvent *event) {
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        if (isVisible() && m_defaultButton && m_defaultButton->isEnabled()) {
            m_defaultButton->click();
        }
        return;
    }
    QDialog::keyPressEvent(event);
}

} // namespace lumora
