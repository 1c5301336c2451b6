#include "widgets/Veil.h"

#include "widgets/Theme.h"

#include <QEvent>
#include <QPainter>

namespace lumora {

namespace {
constexpr int darkness = 72; // of 255
}

Veil::Veil(QWidget *window) : QWidget(window) {
    setObjectName("Veil");
    setAttribute(Qt::WA_TransparentForMouseEvents);
    hide();
    window->installEventFilter(this);
}

bool Veil::eventFilter(QObject *watched, QEvent *event) {
    switch (event->type()) {
    case QEvent::WindowBlocked:
        setGeometry(parentWidget()->rect());
        raise();
        show();
        break;
    case QEvent::WindowUnblocked:
        hide();
        break;
    case QEvent::Resize:
        setGeometry(parentWidget()->rect());
        break;
    default:
        break;
    }
    return QWidget::eventFilter(watched, event);
}

void Veil::paintEvent(QPaintEvent *) {
    QColor shade = colours::ink;
    shade.setAlpha(darkness);
    QPainter(this).fillRect(rect(), shade);
}

} // namespace lumora
