#include "widgets/XServer.h"

#include <QGuiApplication>
#include <QLibrary>

namespace lumora {

/// By name: the offscreen platform has the interface of X too, but no connection.
bool isOnX() {
    return QGuiApplication::platformName() == "xcb";
}

xcb_connection_t *xConnection() {
    const auto *x = isOnX() ? qGuiApp->nativeInterface<QNativeInterface::QX11Application>() : nullptr;
    return x == nullptr ? nullptr : x->connection();
}

QFunctionPointer xcbFunction(const char *name) {
    return QLibrary("xcb", 1).resolve(name);
}

} // namespace lumora
