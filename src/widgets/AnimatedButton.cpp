#include "widgets/AnimatedButton.h"

#include "widgets/Theme.h"

namespace lumora {

void AnimatedButton::setLoop(const QString &name) {
    m_loop = name;
    m_frame = 1;
    update();
}

void AnimatedButton::setFrame(int number) {
    if (number < 1 || number > frames || !motionWanted()) {
        return;
    }
    m_frame = number;
    update();
}

QPixmap AnimatedButton::currentPicture(QSize size, qreal devicePixelRatio) const {
    const QString frameFile = QString(":/loops/%1-%2.svg").arg(m_loop).arg(m_frame);
    return iconPixmap(frameFile, qMin(size.width(), size.height()), devicePixelRatio);
}

} // namespace lumora
