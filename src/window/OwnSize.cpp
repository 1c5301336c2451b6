#include "window/OwnSize.h"

#include "session/Settings.h"
#include "widgets/Compositing.h"

#include <QEvent>
#include <QScreen>
#include <QWidget>

namespace lumora {

namespace {
constexpr double usualPart = 0.8; // of the screen, when the window is not maximised
constexpr double largestPart = 0.9;
} // namespace

OwnSize::OwnSize(QWidget *window, Settings &settings) : QObject(window), m_window(window), m_settings(settings) {
    window->installEventFilter(this);
}

OwnSize::~OwnSize() {
    if (!m_size.isEmpty()) {
        m_settings.write<Setting::WindowSize, Writer::Window>(
            QString("%1x%2").arg(m_size.width()).arg(m_size.height()));
    }
}

void OwnSize::openOn(const QScreen *screen) {
    const QRect room = screen->availableGeometry();
    const QStringList sides = m_settings.read<Setting::WindowSize>().split('x');
    QSize size(sides.value(0).toInt(), sides.value(1).toInt());
    if (size.isEmpty()) {
        size = room.size() * usualPart;
    }
    QRect restored({}, size.expandedTo(m_window->minimumSizeHint()).boundedTo(room.size() * largestPart));
    restored.moveCenter(room.center());
    m_window->setGeometry(windowsAreManaged() ? restored : room);
    m_window->setWindowState(Qt::WindowMaximized);
}

bool OwnSize::eventFilter(QObject *watched, QEvent *event) {
    if (event->type() == QEvent::Resize && m_window->isVisible() && !m_window->isMaximized() &&
        !m_window->isFullScreen() && !m_window->isMinimized()) {
        m_size = m_window->size();
    }
    return QObject::eventFilter(watched, event);
}

} // namespace lumora
