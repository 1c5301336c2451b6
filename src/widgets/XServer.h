// The X server, on desktops that have one. Its library is the one that Qt's own X plug-in has loaded; it is looked up
// so that Lumora needs no X to run.
#pragma once

#include <QFunctionPointer>
#include <cstdlib>
#include <memory>
#include <xcb/xcb.h>

namespace lumora {

bool isOnX();

/// Null where there is no X server.
xcb_connection_t *xConnection();

QFunctionPointer xcbFunction(const char *name);
/// The function of that name and type; null where the library is not.
template <typename Function> Function *xcbFunction(const char *name) {
    return reinterpret_cast<Function *>(xcbFunction(name));
}

struct FreeXReply {
    void operator()(void *reply) const { std::free(reply); }
};
template <typename Reply> using XReply = std::unique_ptr<Reply, FreeXReply>;

} // namespace lumora
