#include "widgets/Compositing.h"

#include <QGuiApplication>
#include <QLibrary>
#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

namespace lumora {

namespace {

struct Free {
    void operator()(void *memory) const { std::free(memory); }
};

/// A compositing manager owns the selection "_NET_WM_CM_S" + screen number (Extended Window Manager Hints). The X
/// library is the one that Qt's own X plug-in has loaded; it is looked up so that Lumora needs no X to run.
bool compositorOwnsScreen(xcb_connection_t *connection) {
    QLibrary xcb("xcb", 1);
    const auto internAtom = reinterpret_cast<decltype(&xcb_intern_atom)>(xcb.resolve("xcb_intern_atom"));
    const auto atomReply = reinterpret_cast<decltype(&xcb_intern_atom_reply)>(xcb.resolve("xcb_intern_atom_reply"));
    const auto getOwner = reinterpret_cast<decltype(&xcb_get_selection_owner)>(xcb.resolve("xcb_get_selection_owner"));
    const auto ownerReply =
        reinterpret_cast<decltype(&xcb_get_selection_owner_reply)>(xcb.resolve("xcb_get_selection_owner_reply"));
    if (!internAtom || !atomReply || !getOwner || !ownerReply) {
        return false;
    }
    const QByteArray name("_NET_WM_CM_S0");
    const auto cookie = internAtom(connection, true, static_cast<quint16>(name.size()), name.constData());
    const std::unique_ptr<xcb_intern_atom_reply_t, Free> atom(atomReply(connection, cookie, nullptr));
    if (!atom || atom->atom == XCB_ATOM_NONE) {
        return false;
    }
    const std::unique_ptr<xcb_get_selection_owner_reply_t, Free> owner(
        ownerReply(connection, getOwner(connection, atom->atom), nullptr));
    return owner && owner->owner != XCB_WINDOW_NONE;
}

} // namespace

bool translucencyWorks() {
    // By name: the offscreen platform has the interface of X too, but no connection.
    if (QGuiApplication::platformName() == "xcb") {
        const auto *x = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
        return x && x->connection() && compositorOwnsScreen(x->connection());
    }
    return QGuiApplication::platformName().startsWith("wayland");
}

} // namespace lumora
