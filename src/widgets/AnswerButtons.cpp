#include "widgets/AnswerButtons.h"

#include "widgets/AnimatedButton.h"
#include "widgets/Motion.h"

#include <QEvent>

namespace lumora {

AnswerButtons::AnswerButtons(QWidget *window) : QObject(window), m_window(window), tmrYes(new QTimer(window)) {
    tmrYes->setObjectName("tmrYes");
    tmrYes->setInterval(AnimatedButton::interval);
    connect(tmrYes, &QTimer::timeout, this, &AnswerButtons::showNextFrame);
    window->installEventFilter(this);
}

AnimatedButton *AnswerButtons::add(const QString &name, const QString &loop, const Look &look) {
    auto *button = new AnimatedButton(loop, look.captionPlace, m_window);
    button->setObjectName(name);
    button->setLoop(loop);
    button->setLook(PictureButton::Look::Raised);
    button->setPictureSize(look.pictureSize);
    button->setMinimumWidth(look.minimumWidth);
    if (look.captionPoints > 0) {
        QFont font = button->font();
        font.setPointSizeF(look.captionPoints);
        button->setFont(font);
    }
    m_buttons += button;
    return button;
}

bool AnswerButtons::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::Show && motionWanted()) {
        tmrYes->start();
    } else if (event->type() == QEvent::Hide) {
        tmrYes->stop();
    }
    return QObject::eventFilter(watched, event);
}

void AnswerButtons::showNextFrame() {
    if (!motionWanted()) { // some desktops answer late
        tmrYes->stop();
        for (AnimatedButton *button : std::as_const(m_buttons)) {
            button->setFrame(1);
        }
        return;
    }
    m_frame = AnimatedButton::nextFrame(m_frame);
    for (AnimatedButton *button : std::as_const(m_buttons)) {
        button->setFrame(m_frame);
    }
    Q_EMIT frameShown(m_frame);
}

} // namespace lumora
