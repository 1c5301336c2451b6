// How large the whole interface is drawn: on a large screen it grows, so that it is not pinned into a corner.
#pragma once

#include <QSize>

namespace lumora {

/// 1, 1.25, 1.5 or 2, for a screen of that many pixels after the desktop's own scaling: the largest of them that leaves
/// 1024 x 768. 1 for a smaller screen.
double interfaceScale(QSize screen);

/// Draws every window of this program by interfaceScale() of the main screen larger. Called once, before the first
/// window. Does nothing where QT_SCALE_FACTOR asks for a scale.
void scaleInterface();

} // namespace lumora
