#include "widgets/MessageBox.h"

#include "widgets/Compositing.h"
#include "widgets/Theme.h"
#include "widgets/TitleStrip.h"

#include <QAbstractButton>
#include <QBitmap>
#include <QLabel>
#include <QPainter>

namespace lumora {

namespace {

constexpr int messageMargin = 10; // pixels around what the toolkit lays out
constexpr int belowStrip = 12;    // pixels below the title strip

struct ButtonPicture {
    QMessageBox::StandardButton button;
    const char *icon;
};

constexpr ButtonPicture buttonPictures[] = {
    {QMessageBox::Ok, "ok"},
    {QMessageBox::Yes, "ok"},
    {QMessageBox::No, "cancel"},
    {QMessageBox::Cancel, "cancel"},
};

/// The drawing with a little space on both sides: the toolkit writes the word close to it.
QPixmap answerPicture(const QString &icon, double ratio) {
    constexpr int side = 28;
    constexpr int space = 4;
    QPixmap picture(QSize(side + 2 * space, side) * ratio);
    picture.setDevicePixelRatio(ratio);
    picture.fill(Qt::transparent);
    QPainter(&picture).drawPixmap(space, 0, iconPixmap(icon, side, ratio));
    return picture;
}

} // namespace

MessageBox::MessageBox(const QString &name, const QString &title, const QString &text, QWidget *owner,
                       StandardButtons buttons)
    : QMessageBox(NoIcon, title, text, buttons, owner, Qt::Dialog | Qt::FramelessWindowHint),
      m_translucent(translucencyWorks()), m_strip(new TitleStrip(this)) {
    setObjectName(name);
    setTextFormat(Qt::PlainText);
    setAttribute(Qt::WA_TranslucentBackground, m_translucent);
    m_strip->lblCaption()->setText(title);
    m_strip->setVisible(!title.trimmed().isEmpty());
    const int edge = (m_translucent ? shadowMargin : 0) + windowBorder;
    const int strip = m_strip->isHidden() ? 0 : m_strip->sizeHint().height();
    setContentsMargins(edge + messageMargin, edge + strip + belowStrip, edge + messageMargin, edge + messageMargin);
    for (const ButtonPicture &picture : buttonPictures) {
        if (QAbstractButton *answer = button(picture.button)) {
            const QPixmap sign = answerPicture(picture.icon, devicePixelRatioF());
            answer->setIcon(sign);
            answer->setIconSize(sign.deviceIndependentSize().toSize());
        }
    }
}

void MessageBox::setPicture(const QString &iconName) {
    setIconPixmap(lumora::iconPixmap(iconName, 64, devicePixelRatioF()));
}

void MessageBox::showAlone() {
    setAttribute(Qt::WA_DeleteOnClose);
    open();
}

void MessageBox::resizeEvent(QResizeEvent *event) {
    QMessageBox::resizeEvent(event);
    const int edge = contentsMargins().left() - messageMargin;
    m_strip->setGeometry(edge, edge, width() - 2 * edge, m_strip->sizeHint().height());
    if (!m_translucent) {
        setMask(windowShape(size()));
    }
}

void MessageBox::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    paintWindow(painter, rect(), m_translucent);
}

} // namespace lumora
