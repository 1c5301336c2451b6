#include "widgets/TitleStrip.h"

#include "widgets/ElidedLabel.h"
#include "widgets/PictureButton.h"
#include "widgets/Theme.h"
#include "widgets/WindowDragger.h"

#include <QHBoxLayout>
#include <QPainter>

namespace lumora {

TitleStrip::TitleStrip(QWidget *parent)
    : QFrame(parent), m_row(new QHBoxLayout(this)), m_caption(new ElidedLabel(Qt::ElideMiddle, this)) {
    setObjectName("picTBar");
    setFixedHeight(smallestButton);
    m_caption->setObjectName("lblCaption");
    QFont bold = m_caption->font();
    bold.setBold(true);
    bold.setPointSizeF(12);
    m_caption->setFont(bold);
    m_caption->setAttribute(Qt::WA_TransparentForMouseEvents);
    const QMargins margins(18, 0, 6, 0); // a close button has its own margin
    const bool mirrored = layoutDirection() == Qt::RightToLeft;
    m_row->setContentsMargins(mirrored ? QMargins(margins.right(), 0, margins.left(), 0) : margins);
    m_row->setSpacing(2);
    m_row->addWidget(m_caption, 1);
    WindowDragger::install(this);
}

PictureButton *TitleStrip::addCloseButton(const QString &objectName) {
    auto *button = new PictureButton("close", PictureButton::CaptionPlace::None, this);
    button->setObjectName(objectName);
    button->setPictureSize(24);
    m_row->addWidget(button);
    return button;
}

void TitleStrip::paintEvent(QPaintEvent *) {
    QPainter painter(this);
    painter.fillRect(QRect(14, height() - 2, width() - 28, 2), colours::line);
}

} // namespace lumora
