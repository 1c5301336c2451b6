// Whether this screen can show translucent windows. Asked by the borderless windows before they paint a shadow.
#pragma once

namespace lumora {

/// True where what is behind a translucent window shows through it: on Wayland always, on X while a compositing
/// manager runs. False on an X server without one (such windows would be black there) and on any other platform.
bool translucencyWorks();

} // namespace lumora
