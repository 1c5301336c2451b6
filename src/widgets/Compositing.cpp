#include "widgets/Compositing.h"

#include "widgets/Theme.h"

#include <QBitmap>
#include <QGuiApplication>
#include <QLibrary>
#include <QPainter>
#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

namespace lumora {

namespace {

struct Free {
    void operator()(void *memory) const { std::free(memory); }
};

/// The X library is the one that Qt's own X plug-in has loaded; it is looked up so that Lumora needs no X to run.
bool isSelectionOwned(xcb_connection_t *connection, const QByteArray &name) {
    QLibrary xcb("xcb", 1);
    const auto internAtom = reinterpret_cast<decltype(&xcb_intern_atom)>(xcb.resolve("xcb_intern_atom"));
    const auto atomReply = reinterpret_cast<decltype(&xcb_intern_atom_reply)>(xcb.resolve("xcb_intern_atom_reply"));
    const auto getOwner = reinterpret_cast<decltype(&xcb_get_selection_owner)>(xcb.resolve("xcb_get_selection_owner"));
    const auto ownerReply =
        reinterpret_cast<decltype(&xcb_get_selection_owner_reply)>(xcb.resolve("xcb_get_selection_owner_reply"));
    if (!internAtom || !atomReply || !getOwner || !ownerReply) {
        return false;
    }
    const auto cookie = internAtom(connection, true, static_cast<quint16>(name.size()), name.constData());
    const std::unique_ptr<xcb_intern_atom_reply_t, Free> atom(atomReply(connection, cookie, nullptr));
    if (!atom || atom->atom == XCB_ATOM_NONE) {
        return false;
    }
    const std::unique_ptr<xcb_get_selection_owner_reply_t, Free> owner(
        ownerReply(connection, getOwner(connection, atom->atom), nullptr));
    return owner && owner->owner != XCB_WINDOW_NONE;
}

/// By name: the offscreen platform has the interface of X too, but no connection.
bool isOnX() {
    return QGuiApplication::platformName() == "xcb";
}

bool isSelectionOwned(const QByteArray &name) {
    const auto *x = qGuiApp->nativeInterface<QNativeInterface::QX11Application>();
    return x && x->connection() && isSelectionOwned(x->connection(), name);
}

} // namespace

bool windowsAreManaged() {
    return !isOnX() || isSelectionOwned("WM_S0"); // Inter-Client Communication Conventions 4.3
}

bool translucencyWorks() {
    if (isOnX()) { // Extended Window Manager Hints
        return isSelectionOwned("_NET_WM_CM_S0");
    }
    return QGuiApplication::platformName().startsWith("wayland");
}

void paintWindow(QPainter &painter, const QRect &window, bool translucent) {
    if (translucent) {
        const QRect surface = window.adjusted(shadowMargin, shadowMargin, -shadowMargin, -shadowMargin);
        paintSoftShadow(painter, surface, panelCorner);
        paintPanel(painter, surface, panelCorner);
        return;
    }
    constexpr int border = 2; // pixels
    painter.fillRect(window, colours::faintInk);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colours::paper);
    painter.drawRoundedRect(window.adjusted(border, border, -border, -border), panelCorner - border,
                            panelCorner - border);
}

QBitmap windowShape(const QSize &window) {
    QBitmap shape(window);
    shape.fill(Qt::color0);
    QPainter painter(&shape);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::color1);
    painter.drawRoundedRect(QRect({}, window), panelCorner, panelCorner);
    return shape;
}

} // namespace lumora
