#include "app/InterfaceScale.h"

#include <QGuiApplication>
#include <QScreen>
#include <algorithm>
#include <private/qhighdpiscaling_p.h>

namespace lumora {

namespace {
constexpr QSize leastRoom(1024, 768);
constexpr double steps[] = {2, 1.5, 1.25};
} // namespace

double interfaceScale(QSize screen) {
    const double room = std::min(1.0 * screen.width() / leastRoom.width(), 1.0 * screen.height() / leastRoom.height());
    const auto *step = std::find_if(std::begin(steps), std::end(steps), [&](double one) { return one <= room; });
    return step == std::end(steps) ? 1 : *step;
}

void scaleInterface() {
    if (!qEnvironmentVariableIsSet("QT_SCALE_FACTOR") && QGuiApplication::primaryScreen() != nullptr) {
        // The environment variable is the only public way, but it is read before the screen is known.
        QHighDpiScaling::setGlobalFactor(interfaceScale(QGuiApplication::primaryScreen()->size()));
    }
}

} // namespace lumora
