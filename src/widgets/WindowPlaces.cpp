#include "widgets/WindowPlaces.h"

#include "widgets/XServer.h"

#include <QGuiApplication>
#include <QWindow>

namespace lumora {

namespace {

/// Sends the toolkit the event of Inter-Client Communication Conventions 4.1.5. Nobody else has a turn between question
/// and answer, so that it comes in its order among the manager's own.
void tellPlace(const QWindow &window) {
    xcb_connection_t *server = xConnection();
    const auto grab = xcbFunction<decltype(xcb_grab_server)>("xcb_grab_server");
    const auto ungrab = xcbFunction<decltype(xcb_ungrab_server)>("xcb_ungrab_server");
    const auto askGeometry = xcbFunction<decltype(xcb_get_geometry)>("xcb_get_geometry");
    const auto geometryReply = xcbFunction<decltype(xcb_get_geometry_reply)>("xcb_get_geometry_reply");
    const auto askPlace = xcbFunction<decltype(xcb_translate_coordinates)>("xcb_translate_coordinates");
    const auto placeReply = xcbFunction<decltype(xcb_translate_coordinates_reply)>("xcb_translate_coordinates_reply");
    const auto send = xcbFunction<decltype(xcb_send_event)>("xcb_send_event");
    const auto flush = xcbFunction<decltype(xcb_flush)>("xcb_flush");
    if (server == nullptr || !grab || !ungrab || !askGeometry || !geometryReply || !askPlace || !placeReply || !send ||
        !flush) {
        return;
    }
    const auto id = static_cast<xcb_window_t>(window.winId());
    grab(server);
    const XReply<xcb_get_geometry_reply_t> geometry(geometryReply(server, askGeometry(server, id), nullptr));
    const XReply<xcb_translate_coordinates_reply_t> place(
        geometry ? placeReply(server, askPlace(server, id, geometry->root, 0, 0), nullptr) : nullptr);
    if (place) {
        xcb_configure_notify_event_t event{};
        event.response_type = XCB_CONFIGURE_NOTIFY;
        event.event = event.window = id;
        event.x = place->dst_x;
        event.y = place->dst_y;
        event.width = geometry->width;
        event.height = geometry->height;
        send(server, 0, id, XCB_EVENT_MASK_STRUCTURE_NOTIFY, reinterpret_cast<const char *>(&event));
    }
    ungrab(server);
    flush(server);
}

} // namespace

WindowPlaces::WindowPlaces(QObject *parent) : QObject(parent) {
    if (isOnX()) {
        qApp->installEventFilter(this);
    }
}

bool WindowPlaces::eventFilter(QObject *watched, QEvent *event) {
    if (watched->isWindowType()) {
        const auto &window = *static_cast<const QWindow *>(watched);
        switch (event->type()) {
        case QEvent::Show:
            m_coming.insert(&window);
            break;
        case QEvent::Hide:
            m_coming.erase(&window);
            break;
        case QEvent::Expose:
            if (window.isExposed() && m_coming.erase(&window) > 0 && window.isTopLevel()) {
                tellPlace(window);
            }
            break;
        default:
            break;
        }
    }
    return QObject::eventFilter(watched, event);
}

} // namespace lumora
