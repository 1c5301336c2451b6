#include "widgets/Compositing.h"

#include "widgets/Theme.h"
#include "widgets/XServer.h"

#include <QBitmap>
#include <QGuiApplication>
#include <QPainter>

namespace lumora {

namespace {

bool isSelectionOwned(const QByteArray &name) {
    xcb_connection_t *server = xConnection();
    const auto internAtom = xcbFunction<decltype(xcb_intern_atom)>("xcb_intern_atom");
    const auto atomReply = xcbFunction<decltype(xcb_intern_atom_reply)>("xcb_intern_atom_reply");
    const auto getOwner = xcbFunction<decltype(xcb_get_selection_owner)>("xcb_get_selection_owner");
    const auto ownerReply = xcbFunction<decltype(xcb_get_selection_owner_reply)>("xcb_get_selection_owner_reply");
    if (server == nullptr || !internAtom || !atomReply || !getOwner || !ownerReply) {
        return false;
    }
    const auto cookie = internAtom(server, true, static_cast<quint16>(name.size()), name.constData());
    const XReply<xcb_intern_atom_reply_t> atom(atomReply(server, cookie, nullptr));
    if (!atom || atom->atom == XCB_ATOM_NONE) {
        return false;
    }
    const XReply<xcb_get_selection_owner_reply_t> owner(ownerReply(server, getOwner(server, atom->atom), nullptr));
    return owner && owner->owner != XCB_WINDOW_NONE;
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
