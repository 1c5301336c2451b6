#include "app/InterfaceScale.h"

#include <QApplication>
#include <QBackingStore>
#include <QScreen>
#include <QWidget>
#include <QWindow>
#include <algorithm>
#include <cmath>
#include <private/qhighdpiscaling_p.h>
#include <qpa/qplatformwindow.h>
#include <qpa/qwindowsysteminterface.h>

namespace lumora {

namespace {

constexpr QSize leastRoom(1024, 768);
constexpr double steps[] = {2, 1.5, 1.25};
constexpr QSize leastRoomOfLargest(800, 600);
constexpr double mostOfUsual = 1.6;

double scaleNow = 1; // what scaleInterface has set

/// How often a window of that size fits the screen.
double fitting(QSize screen, QSize window) {
    return std::min(1.0 * screen.width() / window.width(), 1.0 * screen.height() / window.height());
}

bool isLeftAlone() {
    return qEnvironmentVariableIsSet("QT_SCALE_FACTOR") || QGuiApplication::primaryScreen() == nullptr;
}

/// As it is without our scale.
QSize screenSize() {
    return (QSizeF(QGuiApplication::primaryScreen()->size()) * scaleNow).toSize();
}

struct OpenWindow {
    QWidget *widget;
    QRect native; ///< the platform's pixels
    QSize size;   ///< logical pixels
};

QList<OpenWindow> openWindows() {
    QList<OpenWindow> open;
    for (QWidget *widget : QApplication::topLevelWidgets()) {
        if (widget->windowHandle() != nullptr && widget->windowHandle()->handle() != nullptr) {
            open << OpenWindow{widget, widget->windowHandle()->handle()->geometry(), widget->size()};
        }
    }
    return open;
}

void followScale(const OpenWindow &open) {
    QWidget &widget = *open.widget;
    QWindow &window = *widget.windowHandle();
    if (widget.windowState() & (Qt::WindowMaximized | Qt::WindowFullScreen)) {
        QWindowSystemInterface::handleGeometryChange<QWindowSystemInterface::SynchronousDelivery>(&window, open.native);
    } else {
        const QRect room = window.screen()->availableGeometry();
        QRect place({}, open.size.boundedTo(room.size()));
        place.moveCenter(QHighDpi::fromNativePixels(open.native.center(), window.screen()));
        place.moveLeft(std::clamp(place.left(), room.left(), room.right() + 1 - place.width()));
        place.moveTop(std::clamp(place.top(), room.top(), room.bottom() + 1 - place.height()));
        widget.setGeometry(place); // the widget knows at once; the window tells the platform even where nothing is new
        window.handle()->setGeometry(QHighDpi::toNativeWindowGeometry(place, &window));
    }
    if (widget.backingStore() != nullptr) {
        widget.backingStore()->resize(widget.size());
    }
    if (const QRegion shape = widget.mask(); !shape.isEmpty()) { // the same one, of other pixels
        widget.clearMask();
        widget.setMask(shape);
    }
    widget.update();
}

} // namespace

double interfaceScale(QSize screen, ButtonSize size) {
    const double room = fitting(screen, leastRoom);
    const auto *step = std::find_if(std::begin(steps), std::end(steps), [&](double one) { return one <= room; });
    const double usual = step == std::end(steps) ? 1 : *step;
    const double largest = std::max(usual, std::min(mostOfUsual * usual, fitting(screen, leastRoomOfLargest)));
    return size == ButtonSize::Usual ? usual : size == ButtonSize::Large ? std::sqrt(usual * largest) : largest;
}

void scaleInterface(ButtonSize size) {
    if (isLeftAlone()) {
        return;
    }
    const double wanted = interfaceScale(screenSize(), size);
    if (qFuzzyCompare(wanted, scaleNow)) {
        return;
    }
    const QList<OpenWindow> open = openWindows();
    // The environment variable is the only public way, but it is read before the screen is known. The toolkit warns of
    // open windows; they follow below.
    const QtMessageHandler before =
        qInstallMessageHandler([](QtMsgType, const QMessageLogContext &, const QString &) {});
    QHighDpiScaling::setGlobalFactor(wanted);
    qInstallMessageHandler(before);
    scaleNow = wanted;
    for (const OpenWindow &one : open) {
        followScale(one);
    }
}

bool isScaledAt(ButtonSize size) {
    return !isLeftAlone() && !qFuzzyCompare(interfaceScale(screenSize(), size), interfaceScale(screenSize()));
}

} // namespace lumora
