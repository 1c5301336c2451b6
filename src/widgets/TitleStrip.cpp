#include "widgets/TitleStrip.h"

#include "widgets/Accessibility.h"
#include "widgets/ElidedLabel.h"
#include "widgets/PictureButton.h"
#include "widgets/Theme.h"
#include "widgets/WindowDragger.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>

namespace lumora {

namespace {
constexpr int titlePicture = 28; // pixels
constexpr int buttonAir = 4;     // pixels that a strip is higher than its buttons
} // namespace

TitleStrip::TitleStrip(QWidget *parent)
    : QFrame(parent), m_row(new QHBoxLayout(this)), m_caption(new ElidedLabel(Qt::ElideMiddle, this)),
      m_side(titleButton) {
    setObjectName("picTBar");
    setAccessibleRole(*this, QAccessible::Client);
    m_caption->setObjectName("lblCaption");
    QFont bold = m_caption->font();
    bold.setBold(true);
    bold.setPointSizeF(12);
    m_caption->setFont(bold);
    m_caption->setAttribute(Qt::WA_TransparentForMouseEvents);
    setSideMargins(18, 6); // a close button has its own margin
    m_row->setSpacing(2);
    m_row->addWidget(m_caption, 1);
    setButtonSide(titleButton);
    WindowDragger::install(this);
}

void TitleStrip::setSideMargins(int atStart, int atEnd) {
    m_atStart = atStart;
    m_atEnd = atEnd;
    m_row->setContentsMargins(isRightToLeft() ? atEnd : atStart, 0, isRightToLeft() ? atStart : atEnd, 0);
}

void TitleStrip::changeEvent(QEvent *event) {
    if (event->type() == QEvent::LayoutDirectionChange) {
        setSideMargins(m_atStart, m_atEnd);
    }
    QFrame::changeEvent(event);
}

void TitleStrip::setPicture(const QString &iconName) {
    auto *picture = new QLabel(this);
    picture->setPixmap(iconPixmap(iconName, titlePicture, devicePixelRatioF()));
    picture->setAttribute(Qt::WA_TransparentForMouseEvents);
    m_row->insertWidget(0, picture);
    m_row->insertSpacing(1, 6);
}

PictureButton *TitleStrip::addButton(const QString &objectName, const QString &iconName, int picture) {
    auto *button = new PictureButton(iconName, PictureButton::CaptionPlace::None, this);
    button->setObjectName(objectName);
    m_row->addWidget(button);
    m_buttons.push_back({button, picture});
    fit(m_buttons.back());
    return button;
}

PictureButton *TitleStrip::addButton(const QString &objectName, const QString &iconName) {
    return addButton(objectName, iconName, titlePicture);
}

PictureButton *TitleStrip::addCloseButton(const QString &objectName) {
    return addButton(objectName, "close", closePicture);
}

void TitleStrip::fit(const Button &button) const {
    button.button->setPictureSize(button.picture * m_side / titleButton);
    button.button->setFixedSize(m_side, m_side);
}

void TitleStrip::setButtonSide(int side) {
    m_side = side;
    setFixedHeight(side + buttonAir);
    for (const Button &button : m_buttons) {
        fit(button);
    }
}

void TitleStrip::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.fillRect(QRect(14, height() - 2, width() - 28, 2), colours::line);
}

} // namespace lumora
