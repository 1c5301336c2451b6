// Lumora's icon, for windows and the desktop's task bar.
#pragma once

#include <QIcon>

namespace lumora {

/// The drawing at the sizes that desktops ask for; up to 24 pixels a simpler one, whose few shapes stay clear.
QIcon applicationIcon();

} // namespace lumora
