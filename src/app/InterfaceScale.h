// How large the whole interface is drawn: on a large screen it grows, so that it is not pinned into a corner, and it is
// larger for whoever wants it so.
#pragma once

#include "session/Settings.h"

#include <QSize>

namespace lumora {

/// For the usual size 1, 1.25, 1.5 or 2, for a screen of that many pixels after the desktop's own scaling: the largest
/// of them that leaves 1024 x 768. 1 for a smaller screen. The largest size is at most 1.6 times that and leaves
/// 800 x 600, which all windows fit; the other is half-way between both (their geometric mean).
double interfaceScale(QSize screen, ButtonSize size = ButtonSize::Usual);

/// Draws every window of this program by interfaceScale() of the main screen larger, open ones at once: they keep their
/// size in logical pixels, or fill the screen as before. Does nothing where QT_SCALE_FACTOR asks for a scale.
void scaleInterface(ButtonSize size);

/// Whether that size would be another than the usual one, on this screen.
bool isScaledAt(ButtonSize size);

} // namespace lumora
